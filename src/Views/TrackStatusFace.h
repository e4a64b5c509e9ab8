#pragma once

#include "State/TrackModel.h"
#include "Styling/Tokens.h"

#include <QFont>
#include <QString>

namespace zelk {

// What the status cell of a row shows for its state.
struct TrackStatusFace {
    enum class Kind { pill, checking, downloading, working, review, failed };

    Kind kind = Kind::pill;
    QString text;
    QString label;  // what a screen reader says
    QString symbol; // empty where the face has none
    Ink ink = Ink::secondary;
    double fraction = 0; // of Kind::downloading, 0 to 1
    bool operator==(const TrackStatusFace &) const = default;
};

TrackStatusFace trackStatusFace(const TrackModel &track);

// A download's text without its last " · " parts, as many as it takes to fit into `width` logical pixels. The first
// part always stays. Digits count as the widest, so that a ticking number doesn't make a part come and go.
QString fittingDetail(const QString &text, double width, const QFont &font);

// As much of a failure's reason as fits into `width` logical pixels. What is left out begins after a word or within
// one, never after a stop: that and the ellipsis would read as four dots.
QString fittingReason(const QString &text, double width, const QFont &font);

} // namespace zelk

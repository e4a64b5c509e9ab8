#pragma once

#include "Platform/ConsentStatus.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QObject>
#include <QString>

#include <vector>

namespace zelk {

// Where playlists will come from, in words; empty when there is nothing. The connected account hides the library of
// this machine, which is only its stand-in.
QString playlistSummary(bool appleMusicConnected, bool spotifyConnected, ConsentStatus localAccess);

// Where audio will come from; empty when every source is off.
QString sourcesSummary(const std::vector<SourceId> &sources);

// What was chosen, in words.
struct Recap {
    QString playlists, sources, quality, folder;
};

// A row of what was chosen.
struct RecapFace {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString value MEMBER value CONSTANT)
    Q_PROPERTY(bool isFolder MEMBER isFolder CONSTANT)

public:
    QString name; // of its control
    QString symbol, title, value;
    bool isFolder = false; // which may be changed

    bool operator==(const RecapFace &) const = default;
};

// In their order.
std::vector<RecapFace> recapRows(const Recap &recap);

} // namespace zelk

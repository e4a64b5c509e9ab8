#include "Views/TrackStatusFace.h"

#include "Styling/Format.h"
#include "Transport/Tagged.h"

#include <QCoreApplication>
#include <QFontMetricsF>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

TrackStatusFace pill(StatusRole role, const QString &text) {
    return {TrackStatusFace::Kind::pill, text, text, Tokens::Status::symbol(role), Tokens::Status::color(role), 0};
}

TrackStatusFace working(const TrackModel &track, const TrackState::Working &state) {
    if (state.phase == Phase::downloading) {
        const QString percent = Texts::tr("%1%").arg(Format::percent(track.downloadFraction()));
        return {TrackStatusFace::Kind::downloading,
                track.progressDetail().value_or(percent),
                Texts::tr("Downloading"),
                {},
                Ink::secondary,
                track.downloadFraction()};
    }
    const QString name = Tokens::PhaseStyle::label(state.phase);
    return {TrackStatusFace::Kind::working,
            state.detail.value_or(name),
            name,
            Tokens::PhaseStyle::symbol(state.phase),
            Ink::secondary,
            0};
}

TrackStatusFace done(Finish status) {
    switch (status) {
    case Finish::ok:
        return pill(StatusRole::done, Texts::tr("Done"));
    case Finish::lowConfidence:
        return pill(StatusRole::review, Texts::tr("Low confidence"));
    case Finish::failed:
        return pill(StatusRole::failed, Texts::tr("Failed"));
    case Finish::skipped:
        return pill(StatusRole::skipped, Texts::tr("Skipped"));
    }
    return {};
}

} // namespace

TrackStatusFace trackStatusFace(const TrackModel &track) {
    using Kind = TrackStatusFace::Kind;
    return match(
        track.state(), [](const TrackState::Queued &) { return pill(StatusRole::queued, Texts::tr("Queued")); },
        [](const TrackState::CheckingDisk &) {
            return TrackStatusFace{
                Kind::checking, Texts::tr("Checking disk"), Texts::tr("Checking disk"), {}, Ink::secondary, 0};
        },
        [](const TrackState::Present &) { return pill(StatusRole::present, Texts::tr("On disk")); },
        [&track](const TrackState::Working &state) { return working(track, state); },
        [](const TrackState::AwaitingReview &) {
            return TrackStatusFace{Kind::review,
                                   Texts::tr("Review"),
                                   Texts::tr("Needs review"),
                                   Tokens::Status::symbol(StatusRole::review),
                                   Ink::orange,
                                   0};
        },
        [](const TrackState::Done &state) { return done(state.status); },
        [](const TrackState::Failed &state) {
            TrackStatusFace face = pill(StatusRole::failed, state.reason);
            face.kind = Kind::failed;
            return face;
        });
}

QString fittingDetail(const QString &text, double width, const QFont &font) {
    const QFontMetricsF metrics(font);
    QStringList parts = text.split(u" · "_s);
    while (parts.size() > 1) {
        QString widest = parts.join(u" · "_s);
        for (QChar &c : widest) {
            if (c.isDigit())
                c = u'4';
        }
        if (metrics.horizontalAdvance(widest) <= width)
            break;
        parts.removeLast();
    }
    return parts.join(u" · "_s);
}

QString fittingReason(const QString &text, double width, const QFont &font) {
    QString kept = QFontMetricsF(font).elidedText(text, Qt::ElideRight, width);
    if (kept == text)
        return text;
    while (!kept.isEmpty() && !kept.back().isLetterOrNumber())
        kept.chop(1);
    return kept + u'…';
}

} // namespace zelk

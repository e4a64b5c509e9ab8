#include "Views/SummaryTexts.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelk::SummaryTexts {

namespace {
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};
} // namespace

QString phaseText(SyncPhase phase) {
    switch (phase) {
    case SyncPhase::idle:
        return Texts::tr("Idle");
    case SyncPhase::preparing:
        return Texts::tr("Preparing…");
    case SyncPhase::running:
        return Texts::tr("Syncing");
    case SyncPhase::finishing:
        return Texts::tr("Finishing…");
    case SyncPhase::done:
        return Texts::tr("Complete");
    case SyncPhase::cancelled:
        return Texts::tr("Cancelled");
    case SyncPhase::interrupted:
        return Texts::tr("Interrupted");
    }
    return {};
}

QString runLine(const std::optional<SyncSummary> &summary, const RunCounts &counts) {
    QStringList parts;
    if (summary) {
        const auto add = [&parts](qint64 count, const QString &text) {
            if (count >= 1)
                parts += text.arg(count);
        };
        add(summary->ok, Texts::tr("%1 done"));
        add(summary->present, Texts::tr("%1 on disk"));
        add(summary->flagged, Texts::tr("%1 flagged"));
        add(summary->failed, Texts::tr("%1 failed"));
        add(summary->skipped, Texts::tr("%1 skipped"));
        return parts.isEmpty() ? Texts::tr("Up to date") : parts.join(u" · "_s);
    }
    parts += Texts::tr("%1 / %2 done").arg(counts.completed).arg(counts.total);
    if (counts.review > 0)
        parts += Texts::tr("%1 need review").arg(counts.review);
    if (counts.failed > 0)
        parts += Texts::tr("%1 failed").arg(counts.failed);
    return parts.join(u" · "_s);
}

QString previewCounts(int playlists, int tracks) {
    return Texts::tr("%n playlist(s)", nullptr, playlists) + u" · "_s + Texts::tr("%n track(s)", nullptr, tracks);
}

QString previewLine(int tracks, int onDisk) {
    QStringList parts;
    if (onDisk > 0)
        parts += Texts::tr("%1 on disk").arg(onDisk);
    if (tracks - onDisk > 0)
        parts += Texts::tr("%1 not downloaded").arg(tracks - onDisk);
    return parts.isEmpty() ? Texts::tr("Empty") : parts.join(u" · "_s);
}

} // namespace zelk::SummaryTexts

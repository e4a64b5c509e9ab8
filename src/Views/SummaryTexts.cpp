#include "Views/SummaryTexts.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelk::SummaryTexts {

namespace {
QString tr(const char *text, int n = -1) {
    return QCoreApplication::translate("zelk", text, nullptr, n);
}
} // namespace

QString phaseText(SyncPhase phase) {
    switch (phase) {
    case SyncPhase::idle:
        return tr("Idle");
    case SyncPhase::preparing:
        return tr("Preparing…");
    case SyncPhase::running:
        return tr("Syncing");
    case SyncPhase::finishing:
        return tr("Finishing…");
    case SyncPhase::done:
        return tr("Complete");
    case SyncPhase::cancelled:
        return tr("Cancelled");
    case SyncPhase::interrupted:
        return tr("Interrupted");
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
        add(summary->ok, tr("%1 done"));
        add(summary->present, tr("%1 on disk"));
        add(summary->flagged, tr("%1 flagged"));
        add(summary->failed, tr("%1 failed"));
        add(summary->skipped, tr("%1 skipped"));
        return parts.isEmpty() ? tr("Up to date") : parts.join(u" · "_s);
    }
    parts += tr("%1 / %2 done").arg(counts.completed).arg(counts.total);
    if (counts.review > 0)
        parts += tr("%1 need review").arg(counts.review);
    if (counts.failed > 0)
        parts += tr("%1 failed").arg(counts.failed);
    return parts.join(u" · "_s);
}

QString previewCounts(int playlists, int tracks) {
    return tr("%n playlist(s)", playlists) + u" · "_s + tr("%n track(s)", tracks);
}

QString previewLine(int tracks, int onDisk) {
    QStringList parts;
    if (onDisk > 0)
        parts += tr("%1 on disk").arg(onDisk);
    if (tracks - onDisk > 0)
        parts += tr("%1 not downloaded").arg(tracks - onDisk);
    return parts.isEmpty() ? tr("Empty") : parts.join(u" · "_s);
}

} // namespace zelk::SummaryTexts

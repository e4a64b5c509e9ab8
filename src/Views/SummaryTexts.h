#pragma once

#include "State/StateEnums.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QString>

#include <optional>

// The words of the two summary bars.
namespace zelk::SummaryTexts {

QString phaseText(SyncPhase phase);

struct RunCounts {
    int completed = 0;
    int total = 0;
    int review = 0;
    int failed = 0;
};

// A finished run's counts by its summary, where "Up to date" stands for none; a run under way by its rows.
QString runLine(const std::optional<SyncSummary> &summary, const RunCounts &counts);

QString previewCounts(int playlists, int tracks); // "1 playlist · 12 tracks"
QString previewLine(int tracks, int onDisk);      // "5 on disk · 7 not downloaded", or "Empty"

} // namespace zelk::SummaryTexts

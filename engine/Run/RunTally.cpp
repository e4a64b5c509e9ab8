#include "Run/RunTally.h"

namespace zelk::engine {

bool RunTally::count(const std::vector<PendingReview> &rows, const DecisionOutcome &outcome) {
    bool changed = false;
    const bool written = outcome.state == Recording::State::Written;
    for (std::size_t i = 0; outcome.state != Recording::State::Doubtful && i < rows.size(); ++i) {
        if (!flagged.remove(rows[i].trackId)) { // a row of an earlier run
            continue;
        }
        changed = true;
        const bool isNew = outcome.isNew && i == 0;
        --summary.flagged;
        summary.ok += written && isNew ? 1 : 0;
        summary.present += written && !isNew ? 1 : 0;
        summary.failed += outcome.state == Recording::State::Failed ? 1 : 0;
        summary.skipped += outcome.state == Recording::State::Skipped ? 1 : 0;
    }
    return changed;
}

} // namespace zelk::engine

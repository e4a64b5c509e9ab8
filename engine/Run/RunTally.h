#pragma once

#include "Run/Recording.h"

#include <QSet>

namespace zelk::engine {

/// What a run has come to so far, and what of it the user's decisions still change.
struct RunTally {
    QString runId;
    SyncSummary summary;
    QSet<QString> flagged; ///< Tracks that wait for a decision and count as that.

    /// Counts what came of a decision for rows of this run. False if that changed nothing.
    bool count(const std::vector<PendingReview> &rows, const DecisionOutcome &outcome);
};

} // namespace zelk::engine

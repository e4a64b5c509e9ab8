#pragma once

#include "Run/RunEvents.h"
#include "Store/Records.h"

#include <memory>
#include <vector>

namespace zelk::engine {

/// One recording in a run: all rows that want it share it, and it is looked for and written once.
struct Recording {
    enum class State { Working, Written, Doubtful, Unsure, Failed, Skipped };
    State state = State::Working;
    bool atDesk = false;              ///< Working: on a decision of the user, not by the run itself.
    std::optional<WrittenFile> worse; ///< Working: the file that stands, and is to be replaced by a better.
    WrittenFile file;                 ///< Written.
    PendingReview review;             ///< Doubtful: as the first row has it.
    QString detail;                   ///< Unsure, Failed, Skipped.
    std::vector<std::pair<QString, RunRow>> waiting; ///< Rows, with their keys, that came while it was being worked on.
};

using RecordingPtr = std::shared_ptr<Recording>;

/// What came of a decision of the user.
struct DecisionOutcome {
    Recording::State state = Recording::State::Doubtful; ///< Doubtful: nothing, and the rows wait for another decision.
    WrittenFile file;                                    ///< Written.
    bool isNew = false;                                  ///< Written: just now.
    QString detail;                                      ///< Failed, Skipped.
};

} // namespace zelk::engine

#pragma once

#include "Run/RunEvents.h"
#include "Store/Records.h"

#include <QHash>

#include <memory>
#include <mutex>
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

/// Which recording each file of the collection is used for. Any thread may call.
class RecordingsBySource {
public:
    RecordingPtr value(const QString &path) const {
        const std::lock_guard lock(_mutex);
        return _recordings.value(path);
    }
    void insert(const QString &path, const RecordingPtr &recording) {
        const std::lock_guard lock(_mutex);
        _recordings.insert(path, recording);
    }
    /// The one that the file is used for, which is the given one if there was none.
    RecordingPtr claim(const QString &path, const RecordingPtr &recording) {
        const std::lock_guard lock(_mutex);
        RecordingPtr &entry = _recordings[path];
        if (!entry) {
            entry = recording;
        }
        return entry;
    }
    /// Lets go of the file if it is used for that one.
    void release(const QString &path, const RecordingPtr &recording) {
        const std::lock_guard lock(_mutex);
        if (_recordings.value(path) == recording) {
            _recordings.remove(path);
        }
    }

private:
    mutable std::mutex _mutex;
    QHash<QString, RecordingPtr> _recordings;
};

} // namespace zelk::engine

// How a run goes on while the user's decisions on its recordings are carried out beside it.
#include "Run/SyncRun.h"
#include "Run/WriteFailure.h"

#include <utility>

namespace zelk::engine {

/// A run looks at each row of its playlists anew, and another track may stand in a row's place by now.
void SyncRun::supersedeReviews(const std::vector<Playlist> &playlists) {
    if (_request.dryRun()) {
        return;
    }
    QSet<QString> ids;
    for (const Playlist &playlist : playlists) {
        ids.insert(playlist.id);
    }
    for (const PendingReview &review : _services.database.takeReviewsOfLists(ids)) {
        _superseded.insert(review.trackId, review);
    }
}

std::optional<PendingReview> SyncRun::superseded(const QString &trackId) const {
    const auto review = _superseded.constFind(trackId);
    return review != _superseded.constEnd() ? std::optional(*review) : std::nullopt;
}

void SyncRun::letRowPass(const QString &rowKey, const std::stop_token &stop) {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [&] { return stop.stop_requested() || _rowInHand != rowKey; });
}

RecordingPtr SyncRun::takeToDesk(const QString &rowKey, const QString &sourcePath, const std::stop_token &stop) {
    const auto isBusy = [](const RecordingPtr &recording) {
        return recording && recording->state == Recording::State::Working;
    };
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [&] {
        return stop.stop_requested() ||
               (_rowInHand != rowKey && !isBusy(_recordings.value(rowKey)) && !isBusy(_bySourceNow.value(sourcePath)));
    });
    if (stop.stop_requested()) {
        return nullptr;
    }
    RecordingPtr recording = _recordings.value(rowKey);
    if (!recording) {
        recording = std::make_shared<Recording>();
        _recordings.insert(rowKey, recording);
    } else if (recording->state == Recording::State::Written) { // and stays so for the rows of this run
        recording = std::make_shared<Recording>();
    }
    recording->state = Recording::State::Working;
    recording->atDesk = true;
    if (!sourcePath.isEmpty()) {
        _bySourceNow.insert(sourcePath, recording);
    }
    return recording;
}

void SyncRun::giveBack(const RecordingPtr &recording, const QString &sourcePath, const std::vector<PendingReview> &rows,
                       const DecisionOutcome &outcome) {
    {
        const std::lock_guard lock(_mutex);
        _tally.count(rows, outcome);
    }
    if (!recording) {
        return;
    }
    const bool isOpen = outcome.state == Recording::State::Doubtful;
    std::vector<std::pair<QString, RunRow>> waiting;
    {
        const std::lock_guard lock(_mutex);
        recording->state = outcome.state;
        recording->atDesk = false;
        recording->file = outcome.file;
        recording->detail = outcome.detail;
        if (isOpen) {
            recording->review = rows.front();
            if (_bySourceNow.value(sourcePath) == recording) {
                _bySourceNow.remove(sourcePath);
            }
        }
        waiting = std::exchange(recording->waiting, {});
    }
    for (const auto &[key, row] : waiting) {
        if (!isOpen) {
            settle(row, recording);
            continue;
        }
        try {
            addReview(row, rows.front());
        } catch (const DatabaseError &error) {
            endRow(row, Finish::failed, explainWriteFailure(error, {}, _output.path()).detail);
        }
    }
    const std::lock_guard lock(_mutex);
    _waitingForDesk -= static_cast<int>(waiting.size());
    _changed.notify_all();
}

std::optional<RunTally> SyncRun::toldTally() const {
    const std::lock_guard lock(_mutex);
    return _tellDone ? std::optional(_tally) : std::nullopt;
}

QString SyncRun::reservedStem(const QString &rowKey) const {
    const std::lock_guard lock(_mutex);
    return _reserved.value(rowKey);
}

} // namespace zelk::engine

// How the rows and recordings of a run end; for the threads that write as well as for the one that executes the run.
#include "Run/FetchSource.h"
#include "Run/Orphans.h"
#include "Run/SyncRun.h"
#include "Run/WriteFailure.h"

#include <QDateTime>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

void SyncRun::writeFile(const RunRow &row, const RecordingPtr &recording, WriteOrder order) {
    ProgressMeter meter(_events, row.trackId);
    WriteHooks hooks;
    qint64 id = 0;
    hooks.progress = [&meter](qint64 done, qint64 total) { meter(done, total); };
    hooks.step = [&](Phase phase) { _events.step(row.trackId, phase); };
    _covers.serve(order, {row.track->artworkUrl, row.track->location});
    hooks.commit = [&](const WrittenFile &file) {
        id = _services.database.recordWritten(file, row.track->rowKey, row.playlistId);
    };
    hooks.rollback = [&](const WrittenFile &file) {
        if (order.replaces != file.path) {
            _services.database.takeBack(file);
        } else if (recording->worse) { // which stands as before
            _services.database.recordWritten(*recording->worse, row.track->rowKey, row.playlistId);
        }
    };
    Recording::State state = Recording::State::Failed;
    WrittenFile file;
    QString detail;
    try {
        const auto fetched = fetchSource(order, hooks, _services, _stop.get_token());
        file = writeTrack(order, _output, hooks, _stop.get_token(), _services.files);
        file.id = finished(file, id);
        state = Recording::State::Written;
    } catch (const Stopped &) {
        state = Recording::State::Skipped;
    } catch (const std::exception &error) {
        const WriteFailure failure = explainWriteFailure(error, order.source.path, _output.path());
        detail = failure.detail;
        if (failure.fault == WriteFailure::Fault::Output) {
            failOutput(detail);
        } else if (failure.fault == WriteFailure::Fault::Source && !recording->worse) {
            rest(row.track->rowKey, detail);
        }
    }
    const bool isKept = state == Recording::State::Failed && recording->worse;
    if (isKept) {
        _events.log(ServerEvent::LogLevel::warn, u"%1 stays as it is, though %2 is better: %3"_s.arg(
                                                     recording->worse->path, order.source.path, detail));
        state = Recording::State::Written;
        file = *recording->worse;
    }
    std::vector<std::pair<QString, RunRow>> waiting;
    {
        const std::lock_guard lock(_mutex);
        recording->state = state;
        recording->file = file;
        recording->detail = detail;
        waiting = std::exchange(recording->waiting, {});
        _tally.summary.upgraded += state == Recording::State::Written && recording->worse && !isKept ? 1 : 0;
    }
    if (state == Recording::State::Written && !isKept) {
        endWritten(row, file, ServerEvent::TrackFinishKind::downloaded);
    } else {
        settle(row, recording);
    }
    for (const auto &[key, waiter] : waiting) {
        settle(waiter, recording);
    }
    const std::lock_guard lock(_mutex);
    --_inHand;
    _changed.notify_all();
}

qint64 SyncRun::finished(const WrittenFile &file, qint64 id) {
    if (file.replaces.isEmpty()) {
        return id;
    }
    try {
        return _services.database.finishReplacing(file.path, Database::KeptId::Old);
    } catch (const DatabaseError &error) {
        _events.notKept(error);
        return id;
    }
}

void SyncRun::settle(const RunRow &row, const RecordingPtr &recording) {
    std::unique_lock lock(_mutex);
    const Recording::State state = recording->state;
    const WrittenFile file = recording->file;
    const QString detail = recording->detail;
    lock.unlock();
    switch (state) {
    case Recording::State::Written:
        rememberWant({file.id, row.track->rowKey, row.playlistId});
        endWritten(row, file, ServerEvent::TrackFinishKind::verified);
        return;
    case Recording::State::Failed:
        endRow(row, Finish::failed, detail);
        return;
    case Recording::State::Unsure:
        endRow(row, Finish::lowConfidence, detail);
        return;
    case Recording::State::Working:
    case Recording::State::Doubtful:
    case Recording::State::Skipped:
        endRow(row, Finish::skipped, detail);
    }
}

void SyncRun::conclude(const RunRow &row, const RecordingPtr &recording, Recording::State state,
                       const QString &detail) {
    {
        const std::lock_guard lock(_mutex);
        recording->state = state;
        recording->detail = detail;
    }
    settle(row, recording);
}

void SyncRun::rememberWant(const Want &want) {
    if (_request.dryRun()) {
        return;
    }
    try {
        _services.database.recordWants({want});
    } catch (const DatabaseError &error) {
        _events.notKept(error);
    }
}

void SyncRun::endRow(const RunRow &row, Finish status, const QString &detail) {
    {
        const std::lock_guard lock(_mutex);
        _tally.summary.failed += status == Finish::failed ? 1 : 0;
        _tally.summary.flagged += status == Finish::lowConfidence ? 1 : 0;
        _tally.summary.skipped += status == Finish::skipped ? 1 : 0;
        _anyFailed |= status == Finish::failed;
        _anyFlagged |= status == Finish::lowConfidence;
    }
    _events.finished(row.trackId, status, detail);
}

void SyncRun::endWritten(const RunRow &row, const WrittenFile &file, ServerEvent::TrackFinishKind kind) {
    {
        const std::lock_guard lock(_mutex);
        _tally.summary.ok += kind == ServerEvent::TrackFinishKind::downloaded ? 1 : 0;
        _tally.summary.present += kind == ServerEvent::TrackFinishKind::verified ? 1 : 0;
    }
    _events.written(row.trackId, file, kind);
}

void SyncRun::failOutput(const QString &message) {
    {
        const std::lock_guard lock(_mutex);
        if (std::exchange(_outputTold, true)) {
            return;
        }
    }
    _events.error(u"output"_s, message);
}

/// Leaves a row alone for a while whose failure would come again. What the user has decided on is tried each time.
void SyncRun::rest(const QString &rowKey, const QString &detail) {
    const auto length = static_cast<qint64>(_request.config.run.cooloffHours * 3'600'000);
    if (length <= 0 || _request.dryRun()) {
        return;
    }
    try {
        if (!_services.database.decision(rowKey)) {
            _services.database.recordCoolOff(
                rowKey, {QDateTime::currentMSecsSinceEpoch() + length, _finder->fingerprint(), detail});
        }
    } catch (const DatabaseError &error) {
        _events.notKept(error);
    }
}

void SyncRun::finish(const std::vector<Playlist> &playlists) {
    QSet<QString> ids;
    for (const Playlist &playlist : playlists) {
        ids.insert(playlist.id);
    }
    if (_request.dryRun() || ids.isEmpty()) {
        return;
    }
    const auto snapshot = _services.playlists.known(std::chrono::seconds(0));
    QStringList orphans = findOrphans(_services.database, *snapshot, ids, _request.config.run.toleranceSec);
    if (_request.options.cleanup.value_or(false) && !orphans.isEmpty()) {
        const TrashResult result = moveToTrash(_services.database, orphans);
        if (!result.failure.isEmpty()) {
            _events.error(u"orphans"_s, result.failure);
        }
        const std::lock_guard lock(_mutex);
        _tally.summary.removed = result.moved.size();
        orphans.removeIf([&](const QString &path) { return result.moved.contains(path); });
    }
    if (!orphans.isEmpty()) {
        _events.orphansFound(orphans);
    }
}

void SyncRun::sendSummary() {
    std::unique_lock lock(_mutex);
    const bool tell = _tellDone;
    const SyncSummary summary = _tally.summary;
    lock.unlock();
    if (tell) {
        _events.syncDone(summary);
    }
}

} // namespace zelk::engine

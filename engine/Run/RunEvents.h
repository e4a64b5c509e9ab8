#pragma once

#include "Matching/Matcher.h"
#include "Playlists/Playlist.h"
#include "Run/EventSink.h"
#include "Store/Database.h"
#include "Store/Records.h"

#include <QString>

#include <chrono>
#include <memory>

namespace zelk::engine {

/// One row of a run.
struct RunRow {
    QString trackId;
    QString playlistId;
    qint64 index = 0;
    std::shared_ptr<const std::vector<ListedTrack>> list; ///< Keeps the track alive.
    const ListedTrack *track = nullptr;
};

/// The events of one run, each with the run's id.
class RunEvents {
public:
    RunEvents(EventSink &sink, QString runId, std::stop_token stop)
        : _sink(sink), _runId(std::move(runId)), _stop(std::move(stop)) {}

    const QString &runId() const { return _runId; }

    void syncStarted(qint64 playlists) const;
    void playlistStarted(const Playlist &playlist, qint64 index) const;
    void trackStarted(const RunRow &row) const;
    void diskCheck(const QString &trackId, DiskCheckResult result, const std::optional<TrackMeta> &meta = {}) const;
    void step(const QString &trackId, Phase phase) const;
    void progress(const QString &trackId, qint64 done, qint64 total, double bytesPerSecond) const;
    void needsReview(const PendingReview &review) const;
    void finished(const QString &trackId, Finish status, const QString &detail) const;
    void written(const QString &trackId, const WrittenFile &file, ServerEvent::TrackFinishKind kind) const;
    void playlistFinished(const QString &playlistId, Finish status) const;
    void orphansFound(const QStringList &paths) const;
    void error(const QString &scope, const QString &message) const;
    void log(ServerEvent::LogLevel level, const QString &message) const;
    /// Tells of a note that couldn't be kept, and that a later run will make.
    void notKept(const DatabaseError &error) const;
    void syncDone(const SyncSummary &summary) const;

private:
    void send(const ServerEvent &event) const;

    EventSink &_sink;
    QString _runId;
    std::stop_token _stop;
};

/// Lets a track's progress through at most ten times a second. One thread's.
class ProgressMeter {
public:
    ProgressMeter(const RunEvents &events, QString trackId);
    void operator()(qint64 done, qint64 total);

private:
    using Clock = std::chrono::steady_clock;
    const RunEvents &_events;
    QString _trackId;
    Clock::time_point _begun;
    std::optional<Clock::time_point> _last;
};

TrackMeta metaOf(const WrittenFile &file);
TrackDTO trackOf(const QString &playlistId, qint64 row, const ListedTrack &track);
CandidateDTO candidateOf(const AudioFile &file, double confidence, const QString &reason);

} // namespace zelk::engine

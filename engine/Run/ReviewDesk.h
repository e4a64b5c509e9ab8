#pragma once

#include "Output/TrackWriter.h"
#include "Run/CoverDesk.h"
#include "Run/RunTypes.h"
#include "Run/SyncRun.h"
#include "Store/RunLock.h"

#include <functional>
#include <memory>

namespace zelk::engine {

/// Carries out what the user decides about doubtful tracks, during a run, after it, and after a restart of the engine.
/// One decision after the other, on a thread of its own; any thread may call.
class ReviewDesk {
public:
    struct Settings {
        QString outputDir; ///< Absolute.
        double toleranceSec = 0;
    };

    ReviewDesk(RunServices services, std::function<Settings()> settings);

    /// `run` is the one under way, or null. Never fails: what goes wrong is told by events, and a decision that can't
    /// be carried out leaves the track waiting for another one. `hold` is let go of at the end.
    void decide(const QString &trackId, const ReviewDecision &decision, std::shared_ptr<SyncRun> run,
                RunLock::Hold hold = nullptr);

    /// Waits until all decisions taken so far are carried out.
    void waitUntilIdle() { _queue.waitUntilIdle(); }
    /// Stops what is under way at its next safe point and drops the rest.
    void stop();

private:
    /// What a decision takes.
    struct Taken {
        AudioFile source;
        QString madeFrom;                         ///< The address it was downloaded from; empty for a file of ours.
        std::shared_ptr<const AudioFile> fetched; ///< Keeps the download.

        const QString &name() const { return madeFrom.isEmpty() ? source.path : madeFrom; }
    };

    void carryOut(const QString &trackId, const ReviewDecision &decision, const std::shared_ptr<SyncRun> &run);
    void skip(const std::vector<PendingReview> &rows, const std::shared_ptr<SyncRun> &run);
    bool fetch(const std::vector<PendingReview> &rows, const QString &address, Taken &taken,
               const std::stop_token &stop);
    void take(const std::vector<PendingReview> &rows, const Taken &taken, const std::shared_ptr<SyncRun> &run,
              const std::stop_token &stop);
    WrittenFile write(const PendingReview &row, const Taken &taken, const OutputFolder &folder, double toleranceSec,
                      std::stop_token stop);
    std::optional<WrittenFile> standing(const QString &madeFrom, const Settings &settings);
    std::vector<PendingReview> rowsOf(const PendingReview &review);
    QString freeStem(const PendingReview &row, const OutputFolder &folder);
    void refuse(const QString &message);

    RunServices _services;
    const std::function<Settings()> _settings;
    std::stop_source _stop;
    CoverDesk _covers;
    WorkQueue _queue; // last, so that its thread ends before what it uses
};

} // namespace zelk::engine

#pragma once

#include "Output/TrackWriter.h"
#include "Run/CoverDesk.h"
#include "Run/RunTypes.h"
#include "Run/SyncRun.h"
#include "Store/RunLock.h"

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelk::engine {

/// Carries out what the user decides about doubtful tracks, during a run, after it, and after a restart of the engine.
/// One decision after the other, on a thread of its own, to which runs come at their turns; any thread may call.
class ReviewDesk {
public:
    struct Settings {
        QString outputDir; ///< Absolute.
        double toleranceSec = 0;
    };

    ReviewDesk(RunServices services, std::function<Settings()> settings);
    ~ReviewDesk();

    /// Never fails: what goes wrong is told by events, and a decision that can't be carried out leaves the track
    /// waiting for another one. `runId` is the run that the decision was made in, if known; `hold` is let go of at the
    /// end.
    void decide(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId,
                RunLock::Hold hold = nullptr);

    /// Does a piece of a run's work behind all decisions taken so far and before those that are taken later, and waits
    /// for it. What it throws comes out here.
    void inTurn(const std::function<void()> &work);
    /// From now on decisions are carried out as a part of this run; of none if null. To be called in turn.
    void attend(std::shared_ptr<SyncRun> run);
    /// A run is asked for: nothing more is told of how the one before it has ended.
    void expectRun();

    /// Stops the decisions taken so far at their next safe point. They are kept, and the next run carries them out.
    void cancel();
    /// As cancel(), for those to come too.
    void stop();

private:
    /// What came of the download of an address.
    struct Download {
        std::shared_ptr<const AudioFile> file; ///< Null if nothing came of it.
        QString problem;                       ///< Why; empty if it was stopped.
    };

    struct Taken {
        QString trackId;
        QString rowKey; ///< Of the track that was asked about in that place; empty if none was.
        ReviewDecision decision;
        std::optional<QString> runId;
        std::stop_token stop;
        RunLock::Hold hold;
        Download download; ///< Where the decision is an address.
    };

    /// What a decision takes.
    struct Choice {
        AudioFile source; ///< Of an address, if it was downloaded.
        QString madeFrom; ///< The address; empty for a file of ours.
        Download download;

        const QString &name() const { return madeFrom.isEmpty() ? source.path : madeFrom; }
        /// What the written file is remembered to be made from.
        AudioFile origin() const {
            AudioFile file = source;
            file.path = name();
            return file;
        }
    };

    /// Where the file of a decision goes.
    struct Place {
        QString stem;
        QString replaces;    ///< As in WriteOrder; of the row's own file, which broke or is gone.
        bool spares = false; ///< As in WriteOrder.
        QStringList strays;  ///< As in WriteOrder.
    };

    /// Enters a decision before anything is done about it, since others may be in hand for a long time. Returns the key
    /// of the row that it is for; empty if that isn't waiting.
    QString keep(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId);
    /// Lines up a decision to be carried out.
    void lineUp(Taken taken);
    /// Downloads the address that a decision gives. On a thread of its own, so that a slow server holds up nothing
    /// else.
    Download fetch(const Taken &taken);
    void carryOut(const Taken &taken);
    std::optional<PendingReview> reviewOf(const Taken &taken) const;
    bool isSuperseded(const PendingReview &review) const;
    /// Whether no row waits any more because the run under way asks anew or doesn't need to.
    bool isLeftToTheRun(const PendingReview &review, const std::stop_token &stop);
    /// Does the work for all rows of a recording and tells what came of it, to the run under way too. `sourcePath` is
    /// the file or address that was chosen, if any.
    void settle(const PendingReview &review, const QString &sourcePath, const std::stop_token &stop,
                const std::function<DecisionOutcome(const std::vector<PendingReview> &rows)> &work);
    DecisionOutcome skip(const std::vector<PendingReview> &rows);
    DecisionOutcome take(const std::vector<PendingReview> &rows, const Choice &choice, const std::stop_token &stop);
    RunEvents eventsOf(const PendingReview &row, const std::stop_token &stop) const;
    WrittenFile write(const std::vector<PendingReview> &rows, const Choice &choice, const OutputFolder &folder,
                      double toleranceSec, std::stop_token stop);
    std::optional<WrittenFile> standing(const AudioFile &source, const Settings &settings);
    std::vector<PendingReview> rowsOf(const PendingReview &review);
    Place placeFor(const PendingReview &row, const OutputFolder &folder, double toleranceSec);
    QString freeStem(const PendingReview &row, NameRegistry &names);
    /// `runId` is for an engine in which no run has begun yet.
    void refuse(const std::optional<QString> &runId, const QString &message);
    /// The summary of the run that is over counts its doubtful rows: tells it again once one of them is decided.
    void sumUpAnew(const std::vector<PendingReview> &rows, const DecisionOutcome &outcome, const std::stop_token &stop);

    RunServices _services;
    const std::function<Settings()> _settings;

    // The queue's thread's own
    std::shared_ptr<SyncRun> _run;
    std::optional<RunTally> _ended;

    std::mutex _tellMutex; // guards the next, and is held where others than the queue's thread tell something
    QString _begun;        // the run that began last; changed by the queue's thread only

    std::mutex _mutex; // guards the next two
    bool _runExpected = false;
    std::stop_source _stop; // of the decisions taken since the last cancel
    std::stop_source _ending;
    CoverDesk _covers;
    WorkQueue _queue;        // behind what its thread uses, so that it ends first
    WorkQueue _downloads{2}; // likewise
};

} // namespace zelk::engine

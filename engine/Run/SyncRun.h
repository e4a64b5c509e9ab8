#pragma once

#include "Output/FileNames.h"
#include "Output/OutputFolder.h"
#include "Output/Strays.h"
#include "Output/TrackWriter.h"
#include "Run/CoverDesk.h"
#include "Run/Recording.h"
#include "Run/RunTally.h"
#include "Run/RunTypes.h"
#include "Run/SourceFinder.h"

#include <QHash>
#include <QSet>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelk::engine {

/// How a run and the decisions that the user takes meanwhile keep out of each other's way.
struct RunTurns {
    /// Does the work behind all decisions taken so far and before those that are taken later, and waits for it.
    std::function<void(const std::function<void()> &work)> inTurn;
    /// The run begins. Called in turn, before anything of it is told.
    std::function<void()> begins;
    /// Nothing is left but to send the summary, upon which the application may ask for the next run at once. Called in
    /// turn.
    std::function<void()> over;
};

/// One run, from syncStarted to syncDone. Rows are looked at one after the other on the thread that executes the run,
/// so that names are given in playlist order; the files are written on threads of the run's own, so many at a time as
/// asked.
class SyncRun {
public:
    SyncRun(RunRequest request, RunServices services);

    const QString &runId() const { return _request.runId; }

    /// Does it all; never throws.
    void execute(const RunTurns &turns);

    /// Ends it at the next safe point. From any thread. With `tellDone` the summary is still sent.
    void cancel(bool tellDone);

    /// Takes a recording out of the run's hands while a decision on it is carried out, and the file that was chosen,
    /// if any: rows that want either wait for it. Waits itself while the run is at it. From one thread at a time, and
    /// not the run's. Null if asked to stop meanwhile.
    RecordingPtr takeToDesk(const QString &rowKey, const QString &sourcePath, const std::stop_token &stop);
    /// Gives it back, with what came of it for the rows that were decided on.
    void giveBack(const RecordingPtr &recording, const QString &sourcePath, const std::vector<PendingReview> &rows,
                  const DecisionOutcome &outcome);
    /// What an earlier run asked for a row of this run's playlists, of which it is no row any more. While this is the
    /// desk's run.
    std::optional<PendingReview> superseded(const QString &trackId) const;
    /// Waits while the run is at a row of that recording.
    void letRowPass(const QString &rowKey, const std::stop_token &stop);
    /// The name that the run keeps for a recording; empty if it keeps none. From any thread.
    QString reservedStem(const QString &rowKey) const;
    /// What the summary tells; nothing if none is sent. From any thread.
    std::optional<RunTally> toldTally() const;
    /// A name that the run gives to nothing else. From any thread.
    QString claimStem(const QString &wanted) { return _names.claim(wanted); }

private:
    // Preparation
    std::vector<Playlist> selectedPlaylists(QStringList &refusals);
    void begin(const std::vector<Playlist> &playlists, const QStringList &refusals);
    void prepareOutput();
    void finishReplacements();
    void supersedeReviews(const std::vector<Playlist> &playlists);
    void loadMemory(const std::vector<Playlist> &playlists);
    const SourceFinder *finder();

    // Rows, on the executing thread
    void playPlaylist(const Playlist &playlist, qint64 index);
    bool waitForSlot();
    void letGoOfRow();
    void takeRow(const RunRow &row);
    void failRow(const RunRow &row, const QString &detail);
    void joinRow(const RunRow &row, const RecordingPtr &recording);
    void endJoined(const RunRow &row, const QString &rowKey, const RecordingPtr &recording);
    void searchRow(const RunRow &row, const RecordingPtr &recording, const std::optional<WrittenFile> &earlier);
    void review(const RunRow &row, const RecordingPtr &recording, const std::vector<CandidateDTO> &candidates);
    void write(const RunRow &row, const RecordingPtr &recording, const AudioFile &source,
               const std::optional<WrittenFile> &earlier);
    QString stemOfRow(const ListedTrack &track);
    WriteOrder orderFor(const RunRow &row, const AudioFile &source, const QString &stem, const QString &replaces) const;
    void post(const RunRow &row, const RecordingPtr &recording, const WriteOrder &order);
    /// The recording that a file is used for in this run: the given one if there was none. With `_mutex` held.
    RecordingPtr claimSource(const QString &path, const RecordingPtr &recording);

    // Better copies, on the executing thread
    std::optional<AudioFile> betterCopyOf(const RunRow &row, const WrittenFile &standing);
    bool upgrade(const RunRow &row, const RecordingPtr &recording, const WrittenFile &standing,
                 const AudioFile &source);
    void takeOver(const RunRow &row, const RecordingPtr &recording, const WrittenFile &standing,
                  const WrittenFile &better);
    void keepNotes();
    std::optional<WrittenFile> earlierFile(const QString &rowKey) const;
    /// What an earlier run made from a file of the collection as it is now, or the file itself if it is one of ours.
    std::optional<WrittenFile> earlierFrom(const AudioFile &source) const;
    void addReview(const RunRow &row, const PendingReview &like);
    void addWant(const WrittenFile &file, const QString &rowKey, const QString &playlistId);

    // Endings, on any thread
    void writeFile(const RunRow &row, const RecordingPtr &recording, WriteOrder order);
    qint64 finished(const WrittenFile &file, qint64 id);
    void settle(const RunRow &row, const RecordingPtr &recording);
    /// Says how a recording has ended that nothing was written for, and ends its first row with it.
    void conclude(const RunRow &row, const RecordingPtr &recording, Recording::State state, const QString &detail = {});
    void rememberWant(const Want &want);
    void endRow(const RunRow &row, Finish status, const QString &detail);
    void endWritten(const RunRow &row, const WrittenFile &file, ServerEvent::TrackFinishKind kind);
    void failOutput(const QString &message);
    void rest(const QString &rowKey, const QString &detail);

    void finish(const std::vector<Playlist> &playlists);
    void sendSummary();

    const RunRequest _request;
    RunServices _services;
    std::stop_source _stop;
    RunEvents _events;
    OutputFolder _output;
    CoverDesk _covers;

    // The executing thread's own
    QString _outputProblem;
    QHash<QString, PendingReview> _superseded;  // by track id; set before the desk sees this run
    QMultiHash<QString, WrittenFile> _written;  // what was written in earlier runs, by row key
    QMultiHash<QString, WrittenFile> _bySource; // the same, by what it was made from
    NameRegistry _names;
    Strays _strays;
    std::unique_ptr<SourceFinder> _finder;
    QHash<QString, RecordingPtr> _replacedNow; // by the path of the worse file
    QSet<Want> _wants; // as they are remembered, so that a row whose file stands costs no transaction each time
    std::vector<qint64> _looked; // files that nothing better was found for, to be entered together

    mutable std::mutex _mutex; // guards all below
    std::condition_variable _changed;
    QHash<QString, RecordingPtr> _recordings;  // by row key
    QHash<QString, RecordingPtr> _bySourceNow; // by the file of the collection that this run uses for it
    QHash<QString, QString> _reserved; // stems of rows that still wait for a decision, by row key; changed by the
                                       // executing thread only
    QString _rowInHand;                // the key of the row that the executing thread is at
    int _inHand = 0;
    int _waitingForDesk = 0; // rows
    RunTally _tally;
    bool _anyFailed = false;
    bool _anyFlagged = false;
    bool _outputTold = false;
    bool _tellDone = true;

    std::unique_ptr<WorkQueue> _writers; // last, so that its threads end before what they use
};

} // namespace zelk::engine

#include "Run/ReviewDesk.h"

#include "Files/Download.h"
#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "Output/FileNames.h"
#include "Output/RemoteAudio.h"
#include "Output/Strays.h"
#include "Run/DecisionTarget.h"
#include "Run/WriteFailure.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

ReviewDesk::ReviewDesk(RunServices services, std::function<Settings()> settings)
    : _services(services), _settings(std::move(settings)), _covers(_ending.get_token()) {}

ReviewDesk::~ReviewDesk() {
    stop();
    _downloads.waitUntilIdle();
    _queue.waitUntilIdle(); // what was decided last is kept too
}

void ReviewDesk::decide(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId,
                        RunLock::Hold hold) {
    const QString rowKey = keep(trackId, decision, runId);
    const std::lock_guard lock(_mutex);
    Taken taken{trackId, rowKey, decision, runId, _stop.get_token(), std::move(hold), {}};
    if (addressIn(decision).isEmpty()) {
        lineUp(std::move(taken));
        return;
    }
    _downloads.post([this, taken = std::move(taken)]() mutable {
        taken.download = fetch(taken);
        lineUp(std::move(taken));
    });
}

void ReviewDesk::lineUp(Taken taken) {
    _queue.post([this, taken = std::move(taken)] {
        try {
            carryOut(taken);
        } catch (const std::exception &error) {
            refuse(taken.runId,
                   u"Your decision couldn't be kept (%1). Check the disk of your home folder and decide again."_s.arg(
                       QString::fromUtf8(error.what())));
        }
    });
}

ReviewDesk::Download ReviewDesk::fetch(const Taken &taken) {
    const QString address = addressIn(taken.decision);
    QString runId;
    {
        const std::lock_guard lock(_tellMutex);
        runId = _begun;
    }
    try {
        const auto review = _services.database.review(taken.trackId);
        AudioFile origin;
        origin.path = address;
        if (!review || standing(origin, _settings())) {
            return {}; // there is nothing to download for
        }
        const RunEvents events(_services.events, runId.isEmpty() ? review->runId : runId, taken.stop);
        ProgressMeter meter(events, taken.trackId);
        const auto tell = [&](qint64 done, qint64 total) {
            const std::lock_guard lock(_tellMutex);
            if (_begun == runId) { // or else the row is the later run's
                meter(done, total);
            }
        };
        return {fetchAudio(address, _services.downloads, tell, taken.stop, _services.files), {}};
    } catch (const Stopped &) {
        return {};
    } catch (const FileProblem &error) {
        return {nullptr, u"%1 can't be downloaded: %2"_s.arg(address, error.description())};
    } catch (const std::exception &error) {
        return {nullptr, QString::fromUtf8(error.what())};
    }
}

QString ReviewDesk::keep(const QString &trackId, const ReviewDecision &decision, const std::optional<QString> &runId) {
    QString rowKey;
    try {
        const auto review = _services.database.review(trackId);
        if (!review || (runId && runId != review->runId)) {
            return {};
        }
        rowKey = review->rowKey;
        const QString path = placeTaken(*review, decision);
        if (path.isEmpty()) {
            _services.database.recordDecision(rowKey, {StoredDecision::Kind::Skip, {}});
        } else if (QFileInfo(path).isFile()) {
            _services.database.recordDecision(rowKey, {StoredDecision::Kind::Take, path});
        }
    } catch (const std::exception &) {
        // What is wrong is told when the decision is carried out, which needs the memory as well.
    }
    return rowKey;
}

void ReviewDesk::inTurn(const std::function<void()> &work) {
    _queue.run([&work] { work(); });
}

void ReviewDesk::attend(std::shared_ptr<SyncRun> run) {
    _ended = _run && !run ? _run->toldTally() : std::nullopt;
    _run = std::move(run);
    if (_run) {
        {
            const std::lock_guard lock(_tellMutex);
            _begun = _run->runId();
        }
        const std::lock_guard lock(_mutex);
        _runExpected = false;
    }
}

void ReviewDesk::expectRun() {
    const std::lock_guard lock(_mutex);
    _runExpected = true;
}

void ReviewDesk::sumUpAnew(const std::vector<PendingReview> &rows, const DecisionOutcome &outcome,
                           const std::stop_token &stop) {
    if (!_ended || !_ended->count(rows, outcome)) {
        return;
    }
    {
        const std::lock_guard lock(_mutex);
        if (_runExpected) {
            return;
        }
    }
    RunEvents(_services.events, _ended->runId, stop).syncDone(_ended->summary);
}

void ReviewDesk::cancel() {
    const std::lock_guard lock(_mutex);
    _stop.request_stop();
    if (!_ending.stop_requested()) {
        _stop = std::stop_source();
    }
}

void ReviewDesk::stop() {
    const std::lock_guard lock(_mutex);
    _stop.request_stop();
    _ending.request_stop();
}

/// No event of a run may follow the beginning of a later one, so rows that an earlier run has found doubtful are the
/// later one's now.
RunEvents ReviewDesk::eventsOf(const PendingReview &row, const std::stop_token &stop) const {
    return {_services.events, _begun.isEmpty() ? row.runId : _begun, stop};
}

void ReviewDesk::refuse(const std::optional<QString> &runId, const QString &message) {
    const auto id = _begun.isEmpty() ? runId : std::optional(_begun);
    _services.events.send(ServerEvent::Error{id, u"review"_s, std::nullopt, message});
}

void ReviewDesk::carryOut(const Taken &taken) {
    const auto review = reviewOf(taken);
    if (!review) {
        refuse(taken.runId, u"This track isn't waiting for a decision any more. Sync again to see how it stands."_s);
        return;
    }
    QString path;
    Choice choice;
    try {
        path = placeTaken(*review, taken.decision);
        if (isWebAddress(path)) {
            choice.madeFrom = path;
            choice.download = taken.download;
            choice.source = choice.download.file ? *choice.download.file : AudioFile();
        } else if (!path.isEmpty()) {
            choice.source = fileTaken(*review, path);
        }
    } catch (const TargetRefused &refusal) {
        if (!path.isEmpty()) { // it was kept as it came
            _services.database.forgetDecision(review->rowKey);
        }
        refuse(review->runId, QString::fromUtf8(refusal.what()));
        return;
    }
    const bool isSkip = path.isEmpty();
    const bool mayBeAskedAnew = isSuperseded(*review);
    // Copying may take long, and whatever happens meanwhile, the user isn't asked again. An address counts once it has
    // given audio.
    const bool isGood = choice.madeFrom.isEmpty() || choice.download.file;
    if (isGood && (!isSkip || mayBeAskedAnew)) {
        _services.database.recordDecision(review->rowKey, isSkip ? StoredDecision{StoredDecision::Kind::Skip, {}}
                                                                 : StoredDecision{StoredDecision::Kind::Take, path});
    }
    if (mayBeAskedAnew && isLeftToTheRun(*review, taken.stop)) {
        if (!choice.download.problem.isEmpty()) {
            refuse(review->runId, choice.download.problem);
        }
        return;
    }
    settle(*review, path, taken.stop, [&](const std::vector<PendingReview> &rows) {
        return isSkip ? skip(rows) : take(rows, choice, taken.stop);
    });
}

std::optional<PendingReview> ReviewDesk::reviewOf(const Taken &taken) const {
    const auto before = _run ? _run->superseded(taken.trackId) : std::nullopt;
    if (before && taken.runId == before->runId) { // sent before the run under way was heard of
        return before;
    }
    auto review = _services.database.review(taken.trackId);
    if (taken.rowKey.isEmpty()) { // nobody had asked when it came
        const bool isOfAnother = review && taken.runId && taken.runId != review->runId;
        return isOfAnother ? std::nullopt : review ? review : before;
    }
    // Another track may stand in the row's place by now, and the one that was decided on in another place.
    if (!review || review->rowKey != taken.rowKey) {
        const auto moved = _services.database.reviewsOf(taken.rowKey);
        review = moved.empty() ? std::nullopt : std::optional(moved.front());
    }
    return review ? review : before && before->rowKey == taken.rowKey ? before : std::nullopt;
}

bool ReviewDesk::isSuperseded(const PendingReview &review) const {
    const auto before = _run ? _run->superseded(review.trackId) : std::nullopt;
    return before && before->runId == review.runId;
}

bool ReviewDesk::isLeftToTheRun(const PendingReview &review, const std::stop_token &stop) {
    _run->letRowPass(review.rowKey, stop);
    return _services.database.reviewsOf(review.rowKey).empty();
}

void ReviewDesk::settle(const PendingReview &review, const QString &sourcePath, const std::stop_token &stop,
                        const std::function<DecisionOutcome(const std::vector<PendingReview> &rows)> &work) {
    // Rows of the run under way that come from here on wait for the outcome; those that came before are all in.
    const RecordingPtr recording = _run ? _run->takeToDesk(review.rowKey, sourcePath, stop) : nullptr;
    std::vector<PendingReview> rows{review};
    DecisionOutcome outcome;
    const auto giveBack = [&] {
        if (_run) {
            _run->giveBack(recording, sourcePath, rows, outcome);
        }
    };
    try {
        rows = rowsOf(review);
        outcome = work(rows);
    } catch (...) {
        giveBack();
        throw;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const RunEvents events = eventsOf(rows[i], stop);
        if (outcome.state == Recording::State::Doubtful) { // progress has made it look as if it were being worked on
            events.needsReview(rows[i]);
        } else if (outcome.state == Recording::State::Written) {
            events.written(rows[i].trackId, outcome.file,
                           outcome.isNew && i == 0 ? ServerEvent::TrackFinishKind::downloaded
                                                   : ServerEvent::TrackFinishKind::verified);
        } else {
            events.finished(rows[i].trackId,
                            outcome.state == Recording::State::Failed ? Finish::failed : Finish::skipped,
                            outcome.detail);
        }
    }
    giveBack();
    sumUpAnew(rows, outcome, stop);
}

/// All rows that wait for a decision on the recording; the one that it was made for first.
std::vector<PendingReview> ReviewDesk::rowsOf(const PendingReview &review) {
    std::vector<PendingReview> rows = _services.database.reviewsOf(review.rowKey);
    const auto isDecided = [&](const PendingReview &row) { return row.trackId == review.trackId; };
    const auto decided = std::find_if(rows.begin(), rows.end(), isDecided);
    if (decided != rows.end()) {
        std::rotate(rows.begin(), decided, decided + 1);
    } else if (!isSuperseded(review) || rows.empty()) {
        rows.insert(rows.begin(), review);
    }
    return rows;
}

DecisionOutcome ReviewDesk::skip(const std::vector<PendingReview> &rows) {
    _services.database.recordOutcome(rows, {StoredDecision::Kind::Skip, {}}, nullptr);
    return {Recording::State::Skipped, {}, false, u"You chose to skip this track."_s};
}

DecisionOutcome ReviewDesk::take(const std::vector<PendingReview> &rows, const Choice &choice,
                                 const std::stop_token &stop) {
    const Settings settings = _settings();
    OutputFolder folder(settings.outputDir, _services.files);
    DecisionOutcome outcome;
    try {
        if (const auto before = standing(choice.origin(), settings)) {
            outcome.file = *before;
            _services.database.recordOutcome(rows, {StoredDecision::Kind::Take, choice.name()}, &outcome.file);
        } else if (!choice.download.problem.isEmpty()) { // the rows wait for another decision
            refuse(rows.front().runId, choice.download.problem);
            return outcome;
        } else if (!choice.madeFrom.isEmpty() && !choice.download.file) { // stopped, so the next run asks again
            outcome.state = Recording::State::Skipped;
            return outcome;
        } else {
            folder.prepare(_services.database.knowsFilesIn(folder.path()));
            outcome.file = write(rows, choice, folder, settings.toleranceSec, stop);
            outcome.isNew = true;
        }
        outcome.state = Recording::State::Written;
        return outcome;
    } catch (const Stopped &) { // the decision is kept: the next run carries it out
        outcome.state = Recording::State::Skipped;
    } catch (const std::exception &error) {
        outcome.state = Recording::State::Failed;
        outcome.detail = explainWriteFailure(error, choice.source.path, settings.outputDir).detail;
    }
    _services.database.forgetReviewsOf(rows.front().rowKey);
    return outcome;
}

WrittenFile ReviewDesk::write(const std::vector<PendingReview> &rows, const Choice &choice, const OutputFolder &folder,
                              double toleranceSec, std::stop_token stop) {
    const PendingReview &row = rows.front();
    const RunEvents events = eventsOf(row, stop);
    ProgressMeter meter(events, row.trackId);
    WriteOrder order;
    order.source = choice.source;
    order.madeFrom = choice.madeFrom;
    const Place place = placeFor(row, folder, toleranceSec);
    order.target = folder.path() + u'/' + place.stem + u'.' + targetFormOf(choice.source).extension;
    order.replaces = place.replaces;
    order.sparesReplaced = place.spares;
    order.strays = place.strays;
    order.tags = {row.title, row.artist, row.album};
    order.toleranceSec = toleranceSec;
    _covers.serve(order, {row.artworkUrl.value_or(QString()), row.location.value_or(QString())});
    qint64 id = 0;
    WriteHooks hooks;
    hooks.progress = [&](qint64 done, qint64 total) {
        if (!choice.download.file) { // the way from there to its place is no second download
            meter(done, total);
        }
    };
    hooks.step = [&](Phase phase) { events.step(row.trackId, phase); };
    hooks.commit = [&](const WrittenFile &file) {
        id = _services.database.recordOutcome(rows, {StoredDecision::Kind::Take, choice.name()}, &file);
    };
    hooks.rollback = [&](const WrittenFile &file) {
        if (order.replaces != file.path) {
            _services.database.takeBack(file);
        }
    };
    WrittenFile file = writeTrack(order, folder, hooks, stop, _services.files);
    file.id = id;
    if (!file.replaces.isEmpty()) {
        try {
            file.id = _services.database.finishReplacing(file.path, Database::KeptId::Old);
        } catch (const DatabaseError &error) {
            events.notKept(error);
        }
    }
    return file;
}

std::optional<WrittenFile> ReviewDesk::standing(const AudioFile &source, const Settings &settings) {
    for (const WrittenFile &file : _services.database.writtenFiles()) {
        if (isMadeFrom(file, source) && folderOf(file.path) == settings.outputDir &&
            standsWhole(file, settings.toleranceSec)) {
            return file;
        }
    }
    return std::nullopt;
}

ReviewDesk::Place ReviewDesk::placeFor(const PendingReview &row, const OutputFolder &folder, double toleranceSec) {
    for (const WrittenFile &file : _services.database.writtenFor({row.rowKey})) {
        if (folderOf(file.path) != folder.path()) {
            continue;
        }
        if (const Standing standing = standingOf(file, toleranceSec); !standsWhole(standing)) {
            return {stemOf(file.path), file.path, standing == Standing::Short, {}};
        }
    }
    NameRegistry names;
    QSet<QString> own;
    for (const WrittenFile &file : _services.database.writtenFiles()) {
        if (folderOf(file.path) == folder.path()) {
            own.insert(file.path);
            names.take(stemOf(file.path));
        }
    }
    const QStringList others = folder.others(own);
    for (const QString &path : others) {
        names.take(stemOf(path));
    }
    return {freeStem(row, names), {}, false, Strays(others).named(row.stem)};
}

QString ReviewDesk::freeStem(const PendingReview &row, NameRegistry &names) {
    for (const PendingReview &other : _services.database.reviews()) {
        if (other.rowKey != row.rowKey) {
            names.take(other.stem);
        }
    }
    if (!_run) {
        return names.claim(row.stem);
    }
    // The run may have given names to files that don't stand yet.
    QString stem = _run->reservedStem(row.rowKey);
    while (stem.isEmpty() || names.isTaken(stem)) {
        stem = _run->claimStem(row.stem);
    }
    return stem;
}

} // namespace zelk::engine

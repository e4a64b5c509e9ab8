#include "Run/ReviewDesk.h"

#include "Files/Download.h"
#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "Output/FileNames.h"
#include "Output/RemoteAudio.h"
#include "Run/WriteFailure.h"
#include "Transport/Tagged.h"

#include <QDir>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// The local file or web address that a pasted address means; empty if it means none.
QString placeOf(const QString &address) {
    QString text = address.trimmed();
    if (isWebAddress(text)) {
        return text;
    }
    if (text.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        return QUrl(text).toLocalFile();
    }
    if (text.startsWith("~/"_L1)) {
        text.replace(0, 1, QDir::homePath());
    }
    return text.startsWith(u'/') ? QDir::cleanPath(text) : QString();
}

/// Which file a decision takes, for all but skip; or, in `refusal`, why it takes none.
QString pathTaken(const PendingReview &review, const ReviewDecision &decision, QString &refusal) {
    const auto of = [&](const CandidateDTO &candidate) {
        return QUrl(candidate.url.value_or(QString())).toLocalFile();
    };
    const QString path = match(
        decision,
        [&](const ReviewDecision::Accept &) {
            return review.candidates.empty() ? QString() : of(review.candidates.front());
        },
        [&](const ReviewDecision::Candidate &chosen) {
            for (const CandidateDTO &candidate : review.candidates) {
                if (candidate.id == chosen.candidateId) {
                    return of(candidate);
                }
            }
            return QString();
        },
        [&](const ReviewDecision::Url &address) {
            const QString place = placeOf(address.url);
            if (place.isEmpty()) {
                refusal = u"%1 is no place of a file. Give a path, or an address that begins with file://, http:// or"
                          " https://."_s.arg(address.url);
            }
            return place;
        },
        [](const ReviewDecision::Skip &) { return QString(); });
    if (path.isEmpty() && refusal.isEmpty()) {
        refusal = u"That file isn't among the matches of %1. Choose another one."_s.arg(review.title);
    }
    return path;
}

} // namespace

ReviewDesk::ReviewDesk(RunServices services, std::function<Settings()> settings)
    : _services(services), _settings(std::move(settings)), _covers(_stop.get_token()) {}

void ReviewDesk::decide(const QString &trackId, const ReviewDecision &decision, std::shared_ptr<SyncRun> run,
                        RunLock::Hold hold) {
    _queue.post([this, trackId, decision, run = std::move(run), hold = std::move(hold)] {
        try {
            carryOut(trackId, decision, run);
        } catch (const std::exception &error) {
            refuse(u"Your decision couldn't be kept: %1"_s.arg(QString::fromUtf8(error.what())));
        }
    });
}

void ReviewDesk::stop() {
    _stop.request_stop();
    _queue.clear();
}

void ReviewDesk::refuse(const QString &message) {
    _services.events.send(ServerEvent::Error{std::nullopt, u"review"_s, std::nullopt, message});
}

void ReviewDesk::carryOut(const QString &trackId, const ReviewDecision &decision, const std::shared_ptr<SyncRun> &run) {
    const auto review = _services.database.review(trackId);
    if (!review) {
        refuse(u"This track isn't waiting for a decision any more. Sync again to see how it stands."_s);
        return;
    }
    const std::vector<PendingReview> rows = rowsOf(*review);
    if (caseOf<ReviewDecision::Skip>(decision)) {
        skip(rows, run);
        return;
    }
    QString refusal;
    const QString path = pathTaken(*review, decision, refusal);
    if (!refusal.isEmpty()) {
        refuse(refusal);
        return;
    }
    std::stop_source stop;
    const auto stopNow = [&stop] { stop.request_stop(); };
    const std::stop_callback onShutdown(_stop.get_token(), stopNow);
    const std::stop_callback onCancel(run ? run->stopToken() : std::stop_token(), stopNow);
    Taken taken;
    if (isWebAddress(path)) {
        if (!fetch(rows, path, taken, stop.get_token())) {
            return;
        }
    } else {
        try {
            taken.source = readAudio(path);
        } catch (const NotAudio &error) {
            refuse(u"%1 can't be used: %2. Choose another one."_s.arg(path, QString::fromUtf8(error.what())));
            return;
        }
    }
    for (const CandidateDTO &candidate : review->candidates) {
        if (QUrl(candidate.url.value_or(QString())).toLocalFile() == path && candidate.source) {
            taken.source.origin = fromWireName<SourceId>(QStringView(*candidate.source));
        }
    }
    _services.database.recordDecision(review->rowKey, {StoredDecision::Kind::Take, path});
    take(rows, taken, run, stop.get_token());
}

/// False if nothing came of it: the rows then wait again, or have ended with what stopped it.
bool ReviewDesk::fetch(const std::vector<PendingReview> &rows, const QString &address, Taken &taken,
                       const std::stop_token &stop) {
    const auto eventsOf = [&](const PendingReview &row) { return RunEvents(_services.events, row.runId, stop); };
    taken.madeFrom = address;
    if (standing(address, _settings())) { // it has been downloaded before
        taken.source.path = address;
        return true;
    }
    const RunEvents events = eventsOf(rows.front());
    ProgressMeter meter(events, rows.front().trackId);
    QString problem;
    try {
        taken.fetched = fetchAudio(
            address, _services.downloads, [&meter](qint64 done, qint64 total) { meter(done, total); }, stop,
            _services.files);
        taken.source = *taken.fetched;
        return true;
    } catch (const Stopped &) { // not known to be any good, so the next run asks again
        for (const PendingReview &row : rows) {
            eventsOf(row).finished(row.trackId, Finish::skipped, {});
        }
        return false;
    } catch (const FileProblem &error) {
        problem = u"%1 can't be downloaded: %2"_s.arg(address, error.description());
    } catch (const DownloadFailed &error) {
        problem = QString::fromUtf8(error.what());
    }
    refuse(problem);
    for (const PendingReview &row : rows) { // progress has made it look as if it were being worked on
        eventsOf(row).needsReview(row);
    }
    return false;
}

std::vector<PendingReview> ReviewDesk::rowsOf(const PendingReview &review) {
    std::vector<PendingReview> rows{review};
    for (PendingReview &other : _services.database.reviews()) {
        if (other.rowKey == review.rowKey && other.trackId != review.trackId) {
            rows.push_back(std::move(other));
        }
    }
    return rows;
}

void ReviewDesk::skip(const std::vector<PendingReview> &rows, const std::shared_ptr<SyncRun> &run) {
    const QString &key = rows.front().rowKey;
    const QString detail = u"You chose to skip this track."_s;
    _services.database.recordDecision(key, {StoredDecision::Kind::Skip, {}});
    _services.database.forgetReviewsOf(key);
    if (run) {
        run->noteSkipped(key, detail, static_cast<int>(rows.size()));
    }
    for (const PendingReview &row : rows) {
        RunEvents(_services.events, row.runId, _stop.get_token()).finished(row.trackId, Finish::skipped, detail);
    }
}

void ReviewDesk::take(const std::vector<PendingReview> &rows, const Taken &taken, const std::shared_ptr<SyncRun> &run,
                      const std::stop_token &stop) {
    const Settings settings = _settings();
    OutputFolder folder(settings.outputDir, _services.files);
    const QString &key = rows.front().rowKey;
    const auto eventsOf = [&](const PendingReview &row) { return RunEvents(_services.events, row.runId, stop); };
    WrittenFile file;
    bool fresh = false;
    try {
        if (const auto before = standing(taken.name(), settings)) {
            file = *before;
        } else {
            folder.prepare();
            file = write(rows.front(), taken, folder, settings.toleranceSec, stop);
            fresh = true;
        }
        std::vector<Want> wants;
        for (const PendingReview &row : rows) {
            wants.push_back({file.id, row.rowKey, row.playlistId});
        }
        _services.database.recordWants(wants);
        _services.database.forgetReviewsOf(key);
    } catch (const Stopped &) { // the decision is kept: the next run carries it out
        _services.database.forgetReviewsOf(key);
        for (const PendingReview &row : rows) {
            eventsOf(row).finished(row.trackId, Finish::skipped, {});
        }
        return;
    } catch (const std::exception &error) {
        _services.database.forgetReviewsOf(key);
        const QString detail = explainWriteFailure(error, taken.source.path, settings.outputDir).detail;
        for (const PendingReview &row : rows) {
            eventsOf(row).finished(row.trackId, Finish::failed, detail);
        }
        return;
    }
    if (run) {
        run->noteWritten(key, file, static_cast<int>(rows.size()));
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        eventsOf(rows[i]).written(rows[i].trackId, file,
                                  fresh && i == 0 ? ServerEvent::TrackFinishKind::downloaded
                                                  : ServerEvent::TrackFinishKind::verified);
    }
}

WrittenFile ReviewDesk::write(const PendingReview &row, const Taken &taken, const OutputFolder &folder,
                              double toleranceSec, std::stop_token stop) {
    const RunEvents events(_services.events, row.runId, stop);
    ProgressMeter meter(events, row.trackId);
    WriteOrder order;
    order.source = taken.source;
    order.madeFrom = taken.madeFrom;
    order.target = folder.path() + u'/' + freeStem(row, folder) + u'.' + targetFormOf(taken.source).extension;
    order.tags = {row.title, row.artist, row.album};
    order.toleranceSec = toleranceSec;
    const CoverHints hints{row.artworkUrl.value_or(QString()), row.location.value_or(QString())};
    order.cover = [this, hints] { return _covers.take(hints); };
    if (!coverIn(taken.source.path) && !coverBeside(taken.source.path)) {
        _covers.want(hints); // comes while the file is copied
    }
    qint64 id = 0;
    WriteHooks hooks;
    hooks.progress = [&](qint64 done, qint64 total) {
        if (!taken.fetched) { // the way from there to its place is no second download
            meter(done, total);
        }
    };
    hooks.step = [&](Phase phase) { events.step(row.trackId, phase); };
    hooks.commit = [&](const WrittenFile &file) {
        id = _services.database.recordWritten(file, row.rowKey, row.playlistId);
    };
    hooks.rollback = [&](const WrittenFile &file) { _services.database.forgetFile(file.path); };
    WrittenFile file = writeTrack(order, folder, hooks, stop, _services.files);
    file.id = id;
    return file;
}

std::optional<WrittenFile> ReviewDesk::standing(const QString &madeFrom, const Settings &settings) {
    for (const WrittenFile &file : _services.database.writtenFiles()) {
        if (file.sourcePath == madeFrom && folderOf(file.path) == settings.outputDir &&
            standsWhole(file, settings.toleranceSec)) {
            return file;
        }
    }
    return std::nullopt;
}

QString ReviewDesk::freeStem(const PendingReview &row, const OutputFolder &folder) {
    NameRegistry names;
    for (const QString &stem : folder.stems({})) {
        names.take(stem);
    }
    for (const WrittenFile &file : _services.database.writtenFiles()) {
        if (folderOf(file.path) == folder.path()) {
            names.take(stemOf(file.path));
        }
    }
    for (const PendingReview &other : _services.database.reviews()) {
        if (other.rowKey != row.rowKey) {
            names.take(other.stem);
        }
    }
    return names.claim(row.stem);
}

} // namespace zelk::engine

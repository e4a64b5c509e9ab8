// How a run gives a file's place to a better copy of the same recording.
#include "Run/SyncRun.h"

#include <QFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// The quality that a file was written from, in the form in which copies are compared.
AudioFile copyBehind(const WrittenFile &file) {
    AudioFile copy;
    copy.lossless = file.lossless;
    copy.bitrateKbps = file.sourceKbps;
    copy.origin = file.origin;
    return copy;
}

} // namespace

void SyncRun::finishReplacements() {
    const std::vector<WrittenFile> files = _services.database.writtenFiles();
    for (const WrittenFile &file : files) {
        if (file.replaces.isEmpty()) {
            continue;
        }
        if (standsWhole(file, _request.config.run.toleranceSec)) {
            if (std::any_of(files.begin(), files.end(), [&](const auto &old) { return old.path == file.replaces; })) {
                _services.files.unlink(QFile::encodeName(file.replaces));
            }
            _services.database.finishReplacing(file.path, Database::KeptId::Old);
        } else { // it never came into its place
            _services.database.forgetFile(file.path);
        }
    }
}

std::optional<AudioFile> SyncRun::betterCopyOf(const RunRow &row, const WrittenFile &standing) {
    if (!_request.upgrades() || !_outputProblem.isEmpty()) {
        return std::nullopt;
    }
    const SourceFinder *search = finder();
    if (!search || standing.lookedWith == search->fingerprint() || _services.database.isDecided(standing.id)) {
        return std::nullopt;
    }
    const FoundSource found = search->findBest(*row.track);
    if (found.kind == FoundSource::Kind::Found &&
        betterCopy(found.file, copyBehind(standing), _request.preferences())) {
        return found.file;
    }
    if (found.kind != FoundSource::Kind::Late) {
        _looked.push_back(standing.id);
    }
    return std::nullopt;
}

bool SyncRun::upgrade(const RunRow &row, const RecordingPtr &recording, const WrittenFile &standing,
                      const AudioFile &source) {
    std::unique_lock lock(_mutex);
    if (const RecordingPtr same = _bySourceNow.value(source.path)) {
        if (same->state != Recording::State::Written) {
            return false; // the next run will find it written
        }
        const WrittenFile better = same->file;
        lock.unlock();
        takeOver(row, recording, standing, better);
        return true;
    }
    lock.unlock();
    if (const auto before = earlierFrom(source);
        before && before->path != standing.path && standsWhole(*before, _request.config.run.toleranceSec)) {
        takeOver(row, recording, standing, *before);
        return true;
    }
    lock.lock();
    if (claimSource(source.path, recording) != recording) {
        return false; // a decision has just taken it
    }
    lock.unlock();
    const WriteOrder order = orderFor(row, source, stemOf(standing.path), standing.path);
    _replacedNow.insert(standing.path, recording);
    // Not present: that would end the track.
    _events.diskCheck(row.trackId, DiskCheckResult::missing);
    _events.step(row.trackId, Phase::searching);
    if (_request.dryRun()) {
        conclude(row, recording, Recording::State::Skipped,
                 u"Would replace %1 by %2."_s.arg(standing.path, source.path));
        return true;
    }
    recording->worse = standing;
    post(row, recording, order);
    return true;
}

/// The better copy has been written already, for rows that name the recording in other words.
void SyncRun::takeOver(const RunRow &row, const RecordingPtr &recording, const WrittenFile &standing,
                       const WrittenFile &better) {
    if (!_request.dryRun()) {
        keepNotes(); // they may name the file that goes
        _services.database.recordReplacing(better.path, standing.path);
        _services.files.unlink(QFile::encodeName(standing.path));
        _services.database.finishReplacing(better.path, Database::KeptId::New);
    }
    {
        const std::lock_guard lock(_mutex);
        recording->state = Recording::State::Written;
        recording->file = better;
        ++_tally.summary.present;
        _tally.summary.upgraded += _request.dryRun() ? 0 : 1;
    }
    _replacedNow.insert(standing.path, recording);
    addWant(better, row.track->rowKey, row.playlistId);
    _events.diskCheck(row.trackId, DiskCheckResult::present, metaOf(better));
}

} // namespace zelk::engine

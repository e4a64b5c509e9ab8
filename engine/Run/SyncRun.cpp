#include "Run/SyncRun.h"

#include "Output/Convert.h"
#include "Run/Orphans.h"
#include "Run/WriteFailure.h"
#include "Transport/HelperProtocolEnvelope.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

SyncRun::SyncRun(RunRequest request, RunServices services)
    : _request(std::move(request)), _services(services), _events(services.events, _request.runId, _stop.get_token()),
      _output(_request.outputDir, services.files), _covers(_stop.get_token()), _tally{_request.runId, {}, {}},
      _writers(std::make_unique<WorkQueue>(_request.concurrency())) {}

void SyncRun::cancel(bool tellDone) {
    {
        const std::lock_guard lock(_mutex);
        _tellDone = tellDone;
    }
    _stop.request_stop();
    const std::lock_guard lock(_mutex); // so that no waiter misses it between its look and its wait
    _changed.notify_all();
}

void SyncRun::execute(const RunTurns &turns) {
    QStringList refusals;
    const std::vector<Playlist> playlists = selectedPlaylists(refusals);
    try {
        turns.inTurn([&] {
            turns.begins();
            begin(playlists, refusals);
        });
        for (std::size_t i = 0; i < playlists.size() && !_stop.stop_requested(); ++i) {
            playPlaylist(playlists[i], static_cast<qint64>(i));
        }
        if (!_stop.stop_requested()) {
            turns.inTurn([] {}); // what is decided by now counts
            finish(playlists);
        }
    } catch (const std::exception &error) {
        const QString detail = explainWriteFailure(error, {}, _output.path()).detail;
        _events.error(u"run"_s, u"The sync had to stop. %1"_s.arg(detail));
    }
    _writers->waitUntilIdle();
    turns.inTurn([&] {
        turns.over();
        sendSummary();
    });
}

void SyncRun::playPlaylist(const Playlist &playlist, qint64 index) {
    {
        const std::lock_guard lock(_mutex);
        _anyFailed = _anyFlagged = false;
    }
    _events.playlistStarted(playlist, index);
    for (std::size_t i = 0; i < playlist.tracks->size(); ++i) {
        RunRow row;
        row.index = static_cast<qint64>(i);
        row.playlistId = playlist.id;
        row.trackId = WireProtocol::trackId(playlist.id, row.index);
        row.list = playlist.tracks;
        row.track = &(*playlist.tracks)[i];
        if (!waitForSlot()) {
            endRow(row, Finish::skipped, {});
            continue;
        }
        try {
            takeRow(row);
        } catch (const std::exception &error) {
            failRow(row, explainWriteFailure(error, {}, _output.path()).detail);
        }
        letGoOfRow();
    }
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return _inHand == 0 && _waitingForDesk == 0; });
    }
    keepNotes();
    std::unique_lock lock(_mutex);
    const Finish status = _stop.stop_requested() ? Finish::skipped
                          : _anyFailed           ? Finish::failed
                          : _anyFlagged          ? Finish::lowConfidence
                                                 : Finish::ok;
    lock.unlock(); // sending may wait for the reader, and nobody may wait for that with us
    _events.playlistFinished(playlist.id, status);
}

bool SyncRun::waitForSlot() {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return _stop.stop_requested() || _inHand < _request.concurrency(); });
    return !_stop.stop_requested();
}

void SyncRun::letGoOfRow() {
    const std::lock_guard lock(_mutex);
    _rowInHand.clear();
    _changed.notify_all();
}

void SyncRun::takeRow(const RunRow &row) {
    _events.trackStarted(row);
    const QString &key = row.track->rowKey;
    RecordingPtr recording;
    bool known = false;
    {
        const std::lock_guard lock(_mutex);
        _rowInHand = key;
        RecordingPtr &entry = _recordings[key];
        known = entry != nullptr;
        if (!known) {
            entry = std::make_shared<Recording>();
        }
        recording = entry;
    }
    if (known) {
        joinRow(row, recording);
        return;
    }
    const std::optional<WrittenFile> earlier = earlierFile(key);
    if (const RecordingPtr same = earlier ? _replacedNow.value(earlier->path) : nullptr) {
        {
            const std::lock_guard lock(_mutex);
            _recordings[key] = same;
        }
        joinRow(row, same);
        return;
    }
    const Standing standing = earlier ? standingOf(*earlier, _request.config.run.toleranceSec) : Standing::Gone;
    if (standsWhole(standing)) {
        const auto better = standing == Standing::Ours ? betterCopyOf(row, *earlier) : std::nullopt;
        if (better && upgrade(row, recording, *earlier, *better)) {
            return;
        }
        {
            const std::lock_guard lock(_mutex);
            recording->state = Recording::State::Written;
            recording->file = *earlier;
            ++_tally.summary.present;
        }
        addWant(*earlier, key, row.playlistId);
        _events.diskCheck(row.trackId, DiskCheckResult::present, metaOf(*earlier));
        return;
    }
    _events.diskCheck(row.trackId, standing == Standing::Gone ? DiskCheckResult::missing : DiskCheckResult::broken);
    searchRow(row, recording, earlier);
}

QString SyncRun::stemOfRow(const ListedTrack &track) {
    const std::lock_guard lock(_mutex);
    QString &stem = _reserved[track.rowKey];
    if (stem.isEmpty()) {
        stem = _names.claim(stemFor(track.artist, track.title));
    }
    return stem;
}

void SyncRun::failRow(const RunRow &row, const QString &detail) {
    RecordingPtr recording;
    {
        const std::lock_guard lock(_mutex);
        recording = _recordings.value(row.track->rowKey);
    }
    conclude(row, recording, Recording::State::Failed, detail);
}

std::optional<WrittenFile> SyncRun::earlierFile(const QString &rowKey) const {
    std::optional<WrittenFile> best;
    for (auto file = _written.constFind(rowKey); file != _written.constEnd() && file.key() == rowKey; ++file) {
        if (folderOf(file->path) == _output.path() && (!best || file->id < best->id)) {
            best = *file;
        }
    }
    return best;
}

std::optional<WrittenFile> SyncRun::earlierFrom(const AudioFile &source) const {
    for (auto file = _bySource.constFind(source.path); file != _bySource.constEnd() && file.key() == source.path;
         ++file) {
        if (file->path == source.path || isMadeFrom(*file, source)) {
            return *file;
        }
    }
    return std::nullopt;
}

void SyncRun::joinRow(const RunRow &row, const RecordingPtr &recording) {
    std::unique_lock lock(_mutex);
    const bool stands = recording->state == Recording::State::Written;
    if (stands) {
        ++_tally.summary.present;
    }
    const WrittenFile file = recording->file;
    lock.unlock();
    if (stands) {
        addWant(file, row.track->rowKey, row.playlistId);
        _events.diskCheck(row.trackId, DiskCheckResult::present, metaOf(file));
        return;
    }
    _events.diskCheck(row.trackId, DiskCheckResult::missing);
    _events.step(row.trackId, Phase::searching);
    endJoined(row, row.track->rowKey, recording);
}

void SyncRun::endJoined(const RunRow &row, const QString &rowKey, const RecordingPtr &recording) {
    std::unique_lock lock(_mutex);
    switch (recording->state) {
    case Recording::State::Working:
        recording->waiting.emplace_back(rowKey, row);
        _waitingForDesk += recording->atDesk ? 1 : 0;
        return;
    case Recording::State::Doubtful: {
        const PendingReview like = recording->review;
        lock.unlock();
        addReview(row, like);
        return;
    }
    case Recording::State::Written:
    case Recording::State::Unsure:
    case Recording::State::Failed:
    case Recording::State::Skipped:
        lock.unlock();
        settle(row, recording);
    }
}

void SyncRun::searchRow(const RunRow &row, const RecordingPtr &recording, const std::optional<WrittenFile> &earlier) {
    const QString &key = row.track->rowKey;
    const auto decision = _services.database.decision(key);
    if (decision && decision->kind == StoredDecision::Kind::Skip) {
        conclude(row, recording, Recording::State::Skipped, u"You chose to skip this track."_s);
        return;
    }
    const SourceFinder *search = finder();
    if (!search) { // stopped while the collection was read
        conclude(row, recording, Recording::State::Skipped);
        return;
    }
    // What the list itself names isn't told by the collection, and may have come since.
    const bool isNamed = !row.track->location.isEmpty() && QFileInfo(row.track->location).isFile();
    const bool rests = !decision && !isNamed && _request.config.run.cooloffHours > 0;
    const auto cooling = rests ? _services.database.coolOff(key) : std::nullopt;
    if (cooling && cooling->untilMs > QDateTime::currentMSecsSinceEpoch() &&
        cooling->fingerprint == search->fingerprint()) {
        conclude(row, recording, Recording::State::Failed, cooling->detail);
        return;
    }
    _events.step(row.trackId, Phase::searching);
    const FoundSource found = search->find(*row.track, decision);
    switch (found.kind) {
    case FoundSource::Kind::Found:
        write(row, recording, found.file, earlier);
        return;
    case FoundSource::Kind::Doubtful:
        review(row, recording, found.candidates);
        return;
    case FoundSource::Kind::Missing:
    case FoundSource::Kind::Late:
        rest(key, found.detail);
        conclude(row, recording, Recording::State::Failed, found.detail);
    }
}

void SyncRun::review(const RunRow &row, const RecordingPtr &recording, const std::vector<CandidateDTO> &candidates) {
    if (!_request.asksForReview() || _request.dryRun()) {
        conclude(row, recording, Recording::State::Unsure,
                 u"Only doubtful matches. Sync with review to choose among them."_s);
        return;
    }
    PendingReview pending;
    pending.rowKey = row.track->rowKey;
    pending.stem = stemOfRow(*row.track);
    pending.title = row.track->title;
    pending.artist = row.track->artist;
    pending.album = row.track->album;
    pending.durationSec = row.track->durationSec;
    pending.candidates = candidates;
    if (!row.track->artworkUrl.isEmpty()) {
        pending.artworkUrl = row.track->artworkUrl;
    }
    if (!row.track->location.isEmpty()) {
        pending.location = row.track->location;
    }
    {
        const std::lock_guard lock(_mutex);
        recording->state = Recording::State::Doubtful;
        recording->review = pending;
    }
    addReview(row, pending);
}

void SyncRun::addReview(const RunRow &row, const PendingReview &like) {
    PendingReview review = like;
    review.trackId = row.trackId;
    review.playlistId = row.playlistId;
    review.runId = _request.runId;
    _services.database.recordReview(review);
    {
        const std::lock_guard lock(_mutex);
        ++_tally.summary.flagged;
        _tally.flagged.insert(row.trackId);
        _anyFlagged = true;
    }
    _events.needsReview(review);
}

void SyncRun::write(const RunRow &row, const RecordingPtr &recording, const AudioFile &source,
                    const std::optional<WrittenFile> &earlier) {
    const QString &key = row.track->rowKey;
    // Another row of this run, or of an earlier one, may have asked for the same file in other words.
    RecordingPtr same;
    {
        const std::lock_guard lock(_mutex);
        same = claimSource(source.path, recording);
        _recordings[key] = same;
    }
    if (same != recording) {
        endJoined(row, key, same);
        return;
    }
    const std::optional<WrittenFile> own = earlier ? earlier : earlierFrom(source);
    const Standing standing = own ? standingOf(*own, _request.config.run.toleranceSec) : Standing::Gone;
    if (!earlier && standsWhole(standing)) {
        {
            const std::lock_guard lock(_mutex);
            recording->state = Recording::State::Written;
            recording->file = *own;
        }
        settle(row, recording);
        return;
    }
    WriteOrder order =
        orderFor(row, source, own ? stemOf(own->path) : stemOfRow(*row.track), own ? own->path : QString());
    order.sparesReplaced = standing == Standing::Short;
    if (_request.dryRun()) {
        conclude(row, recording, Recording::State::Skipped, u"Would copy %1 to %2."_s.arg(source.path, order.target));
    } else if (!_outputProblem.isEmpty()) {
        conclude(row, recording, Recording::State::Failed, _outputProblem);
    } else {
        post(row, recording, order);
    }
}

RecordingPtr SyncRun::claimSource(const QString &path, const RecordingPtr &recording) {
    RecordingPtr &entry = _bySourceNow[path];
    if (!entry) {
        entry = recording;
    }
    return entry;
}

WriteOrder SyncRun::orderFor(const RunRow &row, const AudioFile &source, const QString &stem,
                             const QString &replaces) const {
    WriteOrder order;
    order.source = source;
    order.target = _output.path() + u'/' + stem + u'.' + targetFormOf(source).extension;
    order.replaces = replaces;
    if (replaces.isEmpty()) {
        order.strays = _strays.named(stem);
    }
    order.tags = {row.track->title, row.track->artist, row.track->album};
    order.toleranceSec = _request.config.run.toleranceSec;
    return order;
}

void SyncRun::post(const RunRow &row, const RecordingPtr &recording, const WriteOrder &order) {
    {
        const std::lock_guard lock(_mutex);
        ++_inHand;
    }
    _writers->post([this, row, recording, order] { writeFile(row, recording, order); });
}

void SyncRun::addWant(const WrittenFile &file, const QString &rowKey, const QString &playlistId) {
    const Want want{file.id, rowKey, playlistId};
    if (!_request.dryRun() && !_wants.contains(want)) {
        rememberWant(want);
        _wants.insert(want);
    }
}

void SyncRun::keepNotes() {
    if (!_looked.empty() && !_request.dryRun()) {
        _services.database.recordLooks(std::exchange(_looked, {}), _finder->fingerprint());
    }
}

} // namespace zelk::engine

// What a run does before its first row: which playlists it plays, where it writes, and what it remembers.
#include "Run/SyncRun.h"

#include "Files/FileProblem.h"
#include "Store/RowMemory.h"
#include "Support/FileBrowserOrder.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// A scan of playlists may take its time inside a run; beyond this, what is known has to do.
constexpr std::chrono::seconds scanPatience{60};

} // namespace

/// In turn, so that the memory it loads and the folder it clears up are nobody else's meanwhile.
void SyncRun::begin(const std::vector<Playlist> &playlists, const QStringList &refusals) {
    _events.syncStarted(static_cast<qint64>(playlists.size()));
    for (const QString &refusal : refusals) {
        _events.error(u"playlists"_s, refusal);
    }
    if (!_stop.stop_requested()) {
        supersedeReviews(playlists);
        prepareOutput();
        loadMemory(playlists);
    }
}

std::vector<Playlist> SyncRun::selectedPlaylists(QStringList &refusals) {
    const auto snapshot = _services.playlists.refresh(scanPatience, _stop.get_token());
    std::vector<Playlist> playlists;
    QSet<QString> seen;
    for (const PlaylistSelection &selected : _request.selection) {
        const Playlist *playlist = snapshot->find(selected.id);
        if (!playlist || playlist->source != selected.source) {
            const QString refusal =
                snapshot->isComplete
                    ? u"The playlist %1 isn't there any more. Choose Refresh Library in the File menu."_s
                    : u"The playlist %1 hasn't been read yet. Sync again in a minute."_s;
            refusals += refusal.arg(selected.name.value_or(selected.id));
        } else if (_request.config.hides(playlist->source)) {
            refusals +=
                u"The playlist %1 belongs to an account that is disconnected. Connect it in Settings first."_s.arg(
                    selected.name.value_or(playlist->name));
        } else if (playlist->isFolder) {
            refusals += u"%1 is a folder. Choose the playlists in it."_s.arg(selected.name.value_or(playlist->name));
        } else if (!seen.contains(playlist->id)) {
            seen.insert(playlist->id);
            playlists.push_back(*playlist);
        }
    }
    // By name as the application previews them, and those of one name in the library's order, whatever order they were
    // picked in: it decides which of two tracks gets the plain name.
    std::sort(playlists.begin(), playlists.end(), [&snapshot](const Playlist &a, const Playlist &b) {
        return snapshot->byId.value(a.id) < snapshot->byId.value(b.id);
    });
    return sortedByName(std::move(playlists));
}

void SyncRun::prepareOutput() {
    if (_request.dryRun()) {
        return;
    }
    try {
        _output.prepare(_services.database.knowsFilesIn(_output.path()));
        _output.removeLeftovers();
    } catch (const FileProblem &problem) {
        _outputProblem = outputAdvice(_output.path(), problem);
        failOutput(_outputProblem);
    }
}

void SyncRun::loadMemory(const std::vector<Playlist> &playlists) {
    if (!_request.dryRun()) {
        RowMemory::enter(_services.database, playlists);
        finishReplacements();
    }
    QSet<QString> own;
    for (const WrittenFile &file : _services.database.writtenFiles()) {
        if (folderOf(file.path) == _output.path()) {
            own.insert(file.path);
            _names.take(stemOf(file.path));
            _bySource.insert(file.sourcePath, file);
            _bySource.insert(file.path, file); // a list may name what was made for another
        }
    }
    const QStringList others = _output.others(own);
    for (const QString &path : others) {
        _names.take(stemOf(path));
    }
    _strays = Strays(others);
    const auto snapshot = _services.playlists.known(std::chrono::seconds(0));
    for (const PendingReview &review : _services.database.reviews()) {
        if (!snapshot->isComplete || snapshot->find(review.playlistId)) { // what is gone needs no name
            _names.take(review.stem);
            _reserved.insert(review.rowKey, review.stem);
        }
    }
    QStringList keys;
    for (const Playlist &playlist : playlists) {
        if (!_request.dryRun()) {
            _services.database.recordPlaylistOrigin(playlist.id, playlist.origin);
        }
        for (const ListedTrack &track : *playlist.tracks) {
            keys += track.rowKey;
        }
    }
    _written = _services.database.writtenFor(keys);
    for (Want &want : _services.database.wants()) {
        _wants.insert(std::move(want));
    }
}

const SourceFinder *SyncRun::finder() {
    if (!_finder) {
        const auto warn = [this](const QString &message) { _events.log(ServerEvent::LogLevel::warn, message); };
        const auto index = _services.library.refresh(_request.config.collectionDirs, _stop.get_token(), warn);
        if (!index) {
            return nullptr;
        }
        const SourceFinder::Limits limits{static_cast<int>(_request.config.run.searchCount),
                                          _request.config.run.searchTimeoutSec, _services.now};
        _finder = std::make_unique<SourceFinder>(index, _request.preferences(), limits,
                                                 absentFolders(_request.config.collectionDirs), warn);
    }
    return _finder.get();
}

} // namespace zelk::engine

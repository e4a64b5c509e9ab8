#include "Serve/Engine.h"

#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "Output/OutputFolder.h"
#include "Run/Orphans.h"
#include "Transport/HelperProtocolEnvelope.h"

#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// What a request for playlists waits for their scan, safely below the time after which its reply comes too late.
constexpr std::chrono::milliseconds scanPatience{10'000};

constexpr qint64 mostTracksAtOnce = 64;

/// Turns a file's failure into the reply's words.
template<class Function>
void orRefuse(Function function) {
    try {
        function();
    } catch (const FileProblem &problem) {
        throw MethodError(EngineErrorCode::internal,
                          u"%1 can't be written (%2). Nothing was changed."_s.arg(problem.path(), problem.reason()));
    }
}

bool hasExports(const PlaylistSnapshot &snapshot, PlaylistSourceId source) {
    return std::any_of(snapshot.playlists.begin(), snapshot.playlists.end(),
                       [source](const Playlist &playlist) { return playlist.source == source && !playlist.isFolder; });
}

} // namespace

Engine::Engine(EnginePaths paths, EventSink &events)
    : _paths(std::move(paths)), _events(events), _config(_paths, [this](const QString &message) { warn(message); }),
      _secrets(_paths.secretsFile, [this](const QString &message) { warn(message); }),
      _database(_paths.databaseFile, [this](const QString &message) { warn(message); }), _rows(_database),
      _lock(_paths.dataFolder + "/sync.lock"_L1),
      _playlists(
          [this] {
              return PlaylistPlaces{_config.current().playlistDirs, {_paths.libraryFile()}};
          },
          [this](const QString &message) { warn(message); },
          [this](const PlaylistSnapshot &snapshot) {
              noteSources(snapshot);
              try {
                  _rows.follow(snapshot);
              } catch (const DatabaseError &error) {
                  warn(u"The engine's memory can't be written: %1"_s.arg(QString::fromUtf8(error.what())));
              }
          }),
      _library(_database, [this](const QString &message) { warn(message); }),
      _runs(std::make_unique<RunController>(RunServices{_database, _playlists, _library, _events, downloads()}, [this] {
          return ReviewDesk::Settings{outputDir(), _config.current().run.toleranceSec};
      })) {
    OutputFolder(downloads()).removeLeftovers();
    // The application will ask in a moment; and so the accounts whose exports are there soon count as connected.
    _playlists.lookAhead();
}

QString Engine::downloads() const {
    return _paths.dataFolder + u"/downloads"_s;
}

void Engine::warn(const QString &message) {
    _events.send(ServerEvent::Log{std::nullopt, ServerEvent::LogLevel::warn, message});
}

void Engine::noteSources(const PlaylistSnapshot &snapshot) {
    for (const PlaylistSourceId source : allCases<PlaylistSourceId>()) {
        if (hasExports(snapshot, source)) {
            try {
                _config.connectAtFirst(source);
            } catch (const FileProblem &problem) {
                warn(u"The settings can't be written: %1"_s.arg(problem.description()));
            }
        }
    }
}

SafeConfig Engine::safeConfig() const {
    const EngineConfig config = _config.current();
    SafeConfig safe;
    safe.sources = config.sources;
    safe.quality = config.quality;
    safe.run = config.run;
    safe.ui = config.ui;
    safe.outputDir = config.outputDir;
    safe.identity = config.identity;
    safe.proxy = {false, _secrets.has(AccountService::proxy)};
    safe.spotifyConnected = config.spotifyConnected.value_or(false);
    safe.soundcloudConnected = _secrets.has(AccountService::soundcloud);
    safe.acoustidConfigured = _secrets.has(AccountService::acoustid);
    safe.appleMusicConnected = config.appleMusicConnected.value_or(false);
    safe.effectiveSpotifyClientId = _secrets.clientId(AccountService::spotify);
    return safe;
}

void Engine::setConfig(const ConfigPatch &patch) {
    if (patch.proxyEnabled.value_or(false)) {
        throw MethodError(EngineErrorCode::notImplemented,
                          u"patch.proxyEnabled: this engine has no tunnel. It searches no network."_s);
    }
    if (const auto objection = objectionTo(patch)) {
        throw MethodError(EngineErrorCode::invalidParams, *objection);
    }
    orRefuse([&] { _config.apply(patch); });
}

void Engine::storeAccountToken(AccountService service, const QString &token, const std::optional<QString> &clientId) {
    if (token.trimmed().isEmpty()) {
        throw MethodError(EngineErrorCode::invalidParams, u"token: must not be empty"_s);
    }
    changeAccount(service, true, [&] { _secrets.store(service, token, clientId); });
}

void Engine::disconnectAccount(AccountService service) {
    changeAccount(service, false, [&] { _secrets.forget(service); });
}

void Engine::changeAccount(AccountService service, bool connected, const std::function<void()> &changeSecrets) {
    orRefuse([&] {
        const auto source = service == AccountService::spotify      ? std::optional(PlaylistSourceId::spotify)
                            : service == AccountService::applemusic ? std::optional(PlaylistSourceId::apple)
                                                                    : std::nullopt;
        if (!source) {
            changeSecrets();
            return;
        }
        const EngineConfig before = _config.current();
        const std::optional<bool> was =
            *source == PlaylistSourceId::spotify ? before.spotifyConnected : before.appleMusicConnected;
        _config.setConnected(*source, connected);
        try {
            changeSecrets();
        } catch (...) { // "nothing was changed" must be true
            _config.setConnected(*source, was);
            throw;
        }
    });
}

void Engine::connectSpotify() {
    const auto snapshot = _playlists.refresh(scanPatience);
    if (!hasExports(*snapshot, PlaylistSourceId::spotify)) {
        throw MethodError(
            EngineErrorCode::notConfigured,
            snapshot->isComplete
                ? u"No exported Spotify playlists were found. Export them as CSV files into %1 and try again."_s.arg(
                      _config.current().playlistDirs.join(u", "_s))
                : u"No exported Spotify playlists were found yet, and the search goes on. Try again in a minute."_s);
    }
    orRefuse([&] { _config.setConnected(PlaylistSourceId::spotify, true); });
}

std::vector<PlaylistDTO> Engine::listPlaylists(std::optional<PlaylistSourceId> source,
                                               std::chrono::milliseconds waited) {
    const auto snapshot = _playlists.refresh(std::max(scanPatience - waited, std::chrono::milliseconds::zero()));
    const EngineConfig config = _config.current();
    std::vector<PlaylistDTO> playlists;
    for (const Playlist &playlist : snapshot->playlists) {
        if ((source && playlist.source != *source) || config.hides(playlist.source)) {
            continue;
        }
        PlaylistDTO dto;
        dto.id = playlist.id;
        dto.source = playlist.source;
        dto.name = playlist.name;
        dto.isFolder = playlist.isFolder;
        if (!playlist.parentId.isEmpty()) {
            dto.parentId = playlist.parentId;
        }
        if (playlist.tracks) {
            dto.trackCount = static_cast<qint64>(playlist.tracks->size());
        }
        dto.artwork = playlist.artwork;
        playlists.push_back(std::move(dto));
    }
    return playlists;
}

std::vector<PreviewTrackDTO> Engine::playlistTracks(PlaylistSourceId source, const QString &id) {
    const auto snapshot = _playlists.known(scanPatience);
    const Playlist *playlist = snapshot->find(id);
    if (!playlist || playlist->source != source || _config.current().hides(source)) {
        throw MethodError(EngineErrorCode::invalidParams,
                          u"id: there is no such playlist any more. Choose Refresh Library in the File menu."_s);
    }
    if (playlist->isFolder) {
        return {};
    }
    QStringList keys;
    for (const ListedTrack &track : *playlist->tracks) {
        keys += track.rowKey;
    }
    const QMultiHash<QString, WrittenFile> written = _database.writtenFor(keys);
    const QString folder = outputDir() + u'/';
    std::vector<PreviewTrackDTO> tracks;
    for (const ListedTrack &track : *playlist->tracks) {
        const TrackDTO dto = trackOf(playlist->id, static_cast<qint64>(tracks.size()), track);
        PreviewTrackDTO preview{
            dto.id, dto.title, dto.artist, dto.album, dto.durationSec, dto.artwork, PreviewTrackDTO::OnDisk::missing,
            {}};
        for (auto file = written.constFind(track.rowKey); file != written.constEnd() && file.key() == track.rowKey;
             ++file) {
            if (file->path.startsWith(folder) && stampOf(file->path)) {
                preview.onDisk = PreviewTrackDTO::OnDisk::present;
                preview.meta = metaOf(*file);
                break;
            }
        }
        tracks.push_back(std::move(preview));
    }
    return tracks;
}

QStringList Engine::listOrphans(const std::vector<PlaylistSelection> &selection) {
    QSet<QString> ids;
    for (const PlaylistSelection &selected : selection) {
        ids.insert(selected.id);
    }
    return findOrphans(_database, *_playlists.refresh(scanPatience), ids, _config.current().run.toleranceSec);
}

void Engine::trashOrphans(const QStringList &asked) {
    QStringList paths = asked;
    paths.removeDuplicates(); // the second of two would no longer be there
    const QStringList orphans =
        findOrphans(_database, *_playlists.refresh(scanPatience), {}, _config.current().run.toleranceSec);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (!orphans.contains(paths[i])) {
            throw MethodError(
                EngineErrorCode::invalidParams,
                u"paths[%1]: %2 isn't a leftover file of this engine. Nothing was moved."_s.arg(asked.indexOf(paths[i]))
                    .arg(paths[i]));
        }
    }
    const TrashResult result = moveToTrash(_database, paths);
    if (!result.failure.isEmpty()) {
        throw MethodError(EngineErrorCode::internal, result.failure);
    }
}

void Engine::startSync(const std::vector<PlaylistSelection> &selection, const std::optional<SyncOptions> &options,
                       const std::function<void()> &accepted) {
    if (selection.empty()) {
        throw MethodError(EngineErrorCode::invalidParams, u"selection: must name at least one playlist"_s);
    }
    RunRequest request;
    request.options = options.value_or(SyncOptions());
    if (const auto wanted = request.options.concurrency; wanted && (*wanted < 1 || *wanted > mostTracksAtOnce)) {
        throw MethodError(EngineErrorCode::invalidParams,
                          u"options.concurrency: must be from 1 to %1"_s.arg(mostTracksAtOnce));
    }
    request.runId = u"run-"_s + QUuid::createUuid().toString(QUuid::Id128).left(12);
    request.selection = selection;
    request.config = _config.current();
    request.outputDir = outputDir();
    if (!_runs->start(std::move(request), lock(), accepted)) {
        throw MethodError(EngineErrorCode::syncInProgress, u"A sync is already running. Cancel it first."_s);
    }
}

RunLock::Hold Engine::lock() {
    auto hold = _lock.take();
    if (!hold) {
        const qint64 process = _lock.holder();
        throw MethodError(
            EngineErrorCode::syncInProgress,
            u"Another zelk%1 is syncing or carrying out a decision. Wait until it has finished, and try again."_s.arg(
                process > 0 ? u" (process %1)"_s.arg(process) : QString()));
    }
    return hold;
}

void Engine::reviewDecision(const QString &trackId, const ReviewDecision &decision,
                            const std::optional<QString> &runId) {
    try {
        _runs->decide(trackId, decision, runId, lock());
    } catch (const MethodError &error) { // a decision has no reply
        _events.send(ServerEvent::Error{runId, u"review"_s, std::nullopt, error.message()});
    }
}

std::vector<WaitingReview> Engine::waitingReviews() {
    const auto snapshot = _playlists.refresh(scanPatience);
    QHash<QString, PendingReview> byRow;
    for (const PendingReview &review : _database.reviews()) {
        byRow.insert(review.rowKey, review);
    }
    std::vector<WaitingReview> waiting;
    const EngineConfig config = _config.current();
    for (const Playlist &playlist : snapshot->playlists) {
        const bool isShown = playlist.tracks && !config.hides(playlist.source);
        for (std::size_t i = 0; isShown && i < playlist.tracks->size(); ++i) {
            if (auto review = byRow.take((*playlist.tracks)[i].rowKey); !review.trackId.isEmpty()) {
                waiting.push_back({std::move(review), playlist.name});
            }
        }
    }
    return waiting;
}

DoctorSubject Engine::doctorSubject() {
    const auto snapshot = _playlists.refresh(scanPatience);
    const EngineConfig config = _config.current();
    const auto lists =
        std::count_if(snapshot->playlists.begin(), snapshot->playlists.end(), [&config](const Playlist &playlist) {
            return !playlist.isFolder && !config.hides(playlist.source);
        });
    return {config, outputDir(), _database.knowsFilesIn(outputDir()), lists, snapshot->problems};
}

std::vector<DoctorCheck> Engine::runDoctor() {
    return examine(doctorSubject());
}

void Engine::doctorFix(const QString &checkId) {
    const DoctorSubject subject = doctorSubject();
    orRefuse([&] { fixCheck(checkId, subject); });
}

ProvisionToolsResult Engine::provisionTools() {
    const auto tell = [this](const ToolStatusDTO &tool) {
        const bool ok = tool.status == "ok"_L1;
        _events.send(ServerEvent::ToolProgress{tool.id, ok ? ToolPhase::done : ToolPhase::error,
                                               ok ? std::optional(100.0) : std::nullopt, tool.detail});
    };
    ProvisionToolsResult result;
    result.tools.push_back({u"yt-dlp"_s, u"yt-dlp"_s, u"ok"_s, u"Not needed by this engine"_s});
    tell(result.tools.back());
    _events.send(ServerEvent::ToolProgress{u"ffmpeg"_s, ToolPhase::verify, std::nullopt, std::nullopt});
    const QString program = ffmpegProgram();
    result.ok = !program.isEmpty();
    result.tools.push_back({u"ffmpeg"_s, u"ffmpeg"_s, result.ok ? u"ok"_s : u"missing"_s,
                            result.ok ? program : u"Not found. Install the package \"ffmpeg\" and try again."_s});
    tell(result.tools.back());
    return result;
}

} // namespace zelk::engine

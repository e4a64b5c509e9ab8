#pragma once

#include "State/PlaylistGroup.h"
#include "Transport/HelperEvent.h"

namespace zelk {

// Records with made-up contents, for tests that look at one field and need the rest to be there.

inline TrackDTO trackOf(const QString &id) {
    TrackDTO track;
    track.id = id;
    track.title = QStringLiteral("Title of ") + id;
    track.artist = QStringLiteral("Artist");
    track.durationSec = 300;
    return track;
}

inline PreviewTrackDTO previewOf(const QString &id, PreviewTrackDTO::OnDisk onDisk) {
    PreviewTrackDTO track;
    track.id = id;
    track.title = QStringLiteral("Title of ") + id;
    track.artist = QStringLiteral("Artist");
    track.album = QStringLiteral("Album");
    track.durationSec = 240;
    track.artwork = ArtworkRef::appleMusic(QStringLiteral("77"));
    track.onDisk = onDisk;
    return track;
}

inline TrackMeta metaOf(const QString &format) {
    TrackMeta meta;
    meta.format = format;
    return meta;
}

inline CandidateDTO candidateOf(const QString &id) {
    CandidateDTO candidate;
    candidate.id = id;
    candidate.title = QStringLiteral("Candidate");
    candidate.channel = QStringLiteral("channel");
    candidate.durationSec = 301;
    return candidate;
}

inline PlaylistDTO playlistOf(const QString &id, const QString &name, std::optional<QString> parentId = {}) {
    PlaylistDTO playlist;
    playlist.id = id;
    playlist.source = PlaylistSourceId::spotify;
    playlist.name = name;
    playlist.parentId = std::move(parentId);
    return playlist;
}

inline PlaylistDTO folderOf(const QString &id, const QString &name, std::optional<QString> parentId = {}) {
    PlaylistDTO folder = playlistOf(id, name, std::move(parentId));
    folder.isFolder = true;
    return folder;
}

inline std::unique_ptr<PlaylistGroup> groupOf(const QString &id, const QStringList &trackIds) {
    std::vector<std::unique_ptr<TrackModel>> tracks;
    for (const QString &trackId : trackIds)
        tracks.push_back(std::make_unique<TrackModel>(trackOf(trackId)));
    return std::make_unique<PlaylistGroup>(id, QStringLiteral("Name of ") + id, 0, std::move(tracks));
}

// Events of the engine, without what the stores don't read.

inline HelperEvent syncStarted(const QString &runId) {
    ServerEvent::SyncStarted event;
    event.runId = runId;
    return HelperEvent::server(std::move(event));
}

inline HelperEvent playlistStarted(const QString &playlistId, const QStringList &trackIds, qint64 index = 0) {
    ServerEvent::PlaylistStarted event;
    event.playlistId = playlistId;
    event.index = index;
    event.name = QStringLiteral("Name of ") + playlistId;
    for (const QString &id : trackIds)
        event.tracks.push_back(trackOf(id));
    return HelperEvent::server(std::move(event));
}

inline HelperEvent trackStarted(const QString &trackId) {
    ServerEvent::TrackStarted event;
    event.trackId = trackId;
    return HelperEvent::server(std::move(event));
}

inline HelperEvent diskCheck(const QString &trackId, DiskCheckResult result, std::optional<TrackMeta> meta = {}) {
    ServerEvent::DiskCheck event;
    event.trackId = trackId;
    event.result = result;
    event.meta = std::move(meta);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent step(const QString &trackId, Phase phase, std::optional<QString> detail = {}) {
    ServerEvent::Step event;
    event.trackId = trackId;
    event.phase = phase;
    event.detail = std::move(detail);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent downloadProgress(const QString &trackId, double percent, std::optional<QString> sizeText = {},
                                    std::optional<QString> speedText = {}) {
    ServerEvent::DownloadProgress event;
    event.trackId = trackId;
    event.percent = percent;
    event.sizeText = std::move(sizeText);
    event.speedText = std::move(speedText);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent needsReview(const QString &trackId, std::vector<CandidateDTO> candidates = {}) {
    ServerEvent::NeedsReview event;
    event.trackId = trackId;
    event.candidates = std::move(candidates);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent trackFinished(const QString &trackId, Finish status,
                                 std::optional<ServerEvent::TrackFinishKind> kind = {},
                                 std::optional<QString> detail = {}, std::optional<TrackMeta> meta = {}) {
    ServerEvent::TrackFinished event;
    event.trackId = trackId;
    event.status = status;
    event.kind = kind;
    event.detail = std::move(detail);
    event.meta = std::move(meta);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent playlistFinished(const QString &playlistId, Finish status) {
    ServerEvent::PlaylistFinished event;
    event.playlistId = playlistId;
    event.status = status;
    return HelperEvent::server(std::move(event));
}

inline HelperEvent orphansFound(std::optional<QString> playlistId, const QStringList &paths) {
    ServerEvent::OrphansFound event;
    event.playlistId = std::move(playlistId);
    event.paths = paths;
    return HelperEvent::server(std::move(event));
}

inline HelperEvent syncDone(qint64 ok) {
    ServerEvent::SyncDone event;
    event.summary.ok = ok;
    return HelperEvent::server(std::move(event));
}

inline HelperEvent proxyStatus(ProxyStatusValue status, std::optional<QString> detail = {}) {
    ServerEvent::ProxyStatus event;
    event.status = status;
    event.detail = std::move(detail);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent engineError(const QString &message, std::optional<QString> code = {}) {
    ServerEvent::Error event;
    event.message = message;
    event.code = std::move(code);
    return HelperEvent::server(std::move(event));
}

inline HelperEvent logged(const QString &message) {
    ServerEvent::Log event;
    event.message = message;
    return HelperEvent::server(std::move(event));
}

} // namespace zelk

#include "Run/RunEvents.h"

#include "Playlists/RowIdentity.h"
#include "Transport/HelperProtocolEnvelope.h"

#include <QCryptographicHash>
#include <QUrl>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr std::chrono::milliseconds betweenProgress{100};

/// As the tables show sizes: powers of ten, one decimal below ten.
QString sizeText(double bytes) {
    static constexpr const char16_t *units[] = {u"B", u"KB", u"MB", u"GB", u"TB"};
    int unit = 0;
    while (bytes >= 999.5 && unit < 4) {
        bytes /= 1'000;
        ++unit;
    }
    return QString::number(bytes, 'f', unit > 0 && bytes < 9.95 ? 1 : 0) + u' ' + QString::fromUtf16(units[unit]);
}

std::optional<QString> ifAny(const QString &text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

void RunEvents::send(const ServerEvent &event) const {
    _sink.waitForRoom(_stop);
    _sink.send(event);
}

void RunEvents::syncStarted(qint64 playlists) const {
    send(ServerEvent::SyncStarted{_runId, _runId, playlists});
}

void RunEvents::playlistStarted(const Playlist &playlist, qint64 index) const {
    ServerEvent::PlaylistStarted event{_runId, playlist.id, index, playlist.name, {}};
    event.tracks.reserve(playlist.tracks->size());
    for (const ListedTrack &track : *playlist.tracks) {
        event.tracks.push_back(trackOf(playlist.id, static_cast<qint64>(event.tracks.size()), track));
    }
    send(std::move(event));
}

void RunEvents::trackStarted(const RunRow &row) const {
    send(ServerEvent::TrackStarted{_runId, row.trackId, row.index, labelOf(*row.track)});
}

void RunEvents::diskCheck(const QString &trackId, DiskCheckResult result, const std::optional<TrackMeta> &meta) const {
    send(ServerEvent::DiskCheck{_runId, trackId, result, meta});
}

void RunEvents::step(const QString &trackId, Phase phase) const {
    send(ServerEvent::Step{_runId, trackId, phase, std::nullopt});
}

void RunEvents::progress(const QString &trackId, qint64 done, qint64 total, double bytesPerSecond) const {
    const double percent = total > 0   ? 100.0 * static_cast<double>(done) / static_cast<double>(total)
                           : total < 0 ? 0.0 // nobody has said how much there is
                                       : 100.0;
    std::optional<QString> speed;
    if (std::isfinite(bytesPerSecond) && bytesPerSecond > 0) {
        speed = sizeText(bytesPerSecond) + "/s"_L1;
    }
    send(ServerEvent::DownloadProgress{_runId, trackId, percent,
                                       sizeText(static_cast<double>(total < 0 ? done : total)), speed});
}

void RunEvents::needsReview(const PendingReview &review) const {
    ServerEvent::NeedsReview event{_runId, review.trackId, {}, {}, review.candidates};
    event.label = review.artist.isEmpty() ? review.title : review.artist + " - "_L1 + review.title;
    if (!review.candidates.empty()) {
        const CandidateDTO &best = review.candidates.front();
        event.best = ServerEvent::ReviewBest{best.confidence.value_or(0), best.title, best.url.value_or(QString())};
    }
    send(std::move(event));
}

void RunEvents::finished(const QString &trackId, Finish status, const QString &detail) const {
    send(ServerEvent::TrackFinished{_runId, trackId, status, ifAny(detail), std::nullopt, std::nullopt});
}

void RunEvents::written(const QString &trackId, const WrittenFile &file, ServerEvent::TrackFinishKind kind) const {
    send(ServerEvent::TrackFinished{_runId, trackId, Finish::ok, std::nullopt, kind, metaOf(file)});
}

void RunEvents::playlistFinished(const QString &playlistId, Finish status) const {
    send(ServerEvent::PlaylistFinished{_runId, playlistId, status});
}

void RunEvents::orphansFound(const QStringList &paths) const {
    send(ServerEvent::OrphansFound{_runId, std::nullopt, paths});
}

void RunEvents::error(const QString &scope, const QString &message) const {
    send(ServerEvent::Error{_runId, scope, std::nullopt, message});
}

void RunEvents::log(ServerEvent::LogLevel level, const QString &message) const {
    send(ServerEvent::Log{_runId, level, message});
}

void RunEvents::notKept(const DatabaseError &error) const {
    log(ServerEvent::LogLevel::warn,
        u"The engine's memory can't be written: %1"_s.arg(QString::fromUtf8(error.what())));
}

void RunEvents::syncDone(const SyncSummary &summary) const {
    send(ServerEvent::SyncDone{_runId, _runId, summary});
}

ProgressMeter::ProgressMeter(const RunEvents &events, QString trackId)
    : _events(events), _trackId(std::move(trackId)), _begun(Clock::now()) {}

void ProgressMeter::operator()(qint64 done, qint64 total) {
    const auto now = Clock::now();
    if (_last && now - *_last < betweenProgress) {
        return;
    }
    _last = now;
    const double seconds = std::chrono::duration<double>(now - _begun).count();
    _events.progress(_trackId, done, total, seconds > 0 ? static_cast<double>(done) / seconds : 0);
}

TrackMeta metaOf(const WrittenFile &file) {
    TrackMeta meta;
    meta.format = ifAny(file.format);
    if (file.bitrateKbps > 0) {
        meta.bitrate = QString::number(file.bitrateKbps);
    }
    if (file.origin) {
        meta.source = QString(wireName(*file.origin));
    }
    return meta;
}

TrackDTO trackOf(const QString &playlistId, qint64 row, const ListedTrack &track) {
    TrackDTO dto;
    dto.id = WireProtocol::trackId(playlistId, row);
    dto.title = track.title;
    dto.artist = track.artist;
    dto.album = ifAny(track.album);
    dto.durationSec = track.durationSec;
    dto.artwork = !track.persistentId.isEmpty() ? ArtworkRef::appleMusic(track.persistentId)
                  : !track.artworkUrl.isEmpty() ? artworkOfUrlText(track.artworkUrl)
                                                : ArtworkRef::none();
    return dto;
}

CandidateDTO candidateOf(const AudioFile &file, double confidence, const QString &reason) {
    CandidateDTO candidate;
    const QByteArray digest = QCryptographicHash::hash(file.path.toUtf8(), QCryptographicHash::Sha1);
    candidate.id = u"c"_s + QString::fromLatin1(digest.toHex().left(12));
    candidate.title = file.title;
    candidate.channel = file.artist;
    candidate.durationSec = file.durationSec;
    if (file.origin) {
        candidate.source = QString(wireName(*file.origin));
    }
    candidate.format = ifAny(file.format);
    if (file.bitrateKbps > 0) {
        candidate.bitrateKbps = file.bitrateKbps;
    }
    candidate.confidence = confidence;
    candidate.reason = ifAny(reason);
    candidate.url = QUrl::fromLocalFile(file.path).toString(QUrl::FullyEncoded);
    return candidate;
}

} // namespace zelk::engine

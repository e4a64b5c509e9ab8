#include "State/SyncStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(SyncStore)
};

QString progressText(const ServerEvent::DownloadProgress &event) {
    // The figure as the engine told it, even one above 100; the zero turns a negative zero round.
    QStringList parts(Texts::tr("%1%").arg(std::round(event.percent) + 0.0, 0, 'f', 0));
    if (event.sizeText)
        parts.append(*event.sizeText);
    if (event.speedText)
        parts.append(*event.speedText);
    return parts.join(QStringLiteral(" · "));
}

TrackState stateAfter(const ServerEvent::TrackFinished &event) {
    if (event.status == Finish::failed)
        return TrackState::failed(event.detail.value_or(Texts::tr("Failed")));
    // A track that the engine only verified is no new download.
    if (event.status == Finish::ok && event.kind == ServerEvent::TrackFinishKind::verified)
        return TrackState::present(event.meta);
    return TrackState::done(event.status, event.meta);
}

/// What to show of the routed tunnel; nothing when it is off.
std::optional<SyncBanner> bannerOf(const ServerEvent::ProxyStatus &event) {
    const auto because = [&](const QString &text) {
        return event.detail ? QStringLiteral("%1: %2").arg(text, *event.detail) : text;
    };
    switch (event.status) {
    case ProxyStatusValue::off:
        return std::nullopt;
    case ProxyStatusValue::connecting:
        return SyncBanner::info(Texts::tr("Connecting to Vantrix VPN…"));
    case ProxyStatusValue::connected: {
        const auto text = Texts::tr("Soulseek is routed through Vantrix VPN");
        return SyncBanner::info(event.detail ? QStringLiteral("%1 (%2)").arg(text, *event.detail) : text);
    }
    case ProxyStatusValue::down:
        return SyncBanner::warning(because(Texts::tr("Vantrix VPN disconnected — Soulseek is paused")));
    case ProxyStatusValue::error:
        return SyncBanner::warning(because(Texts::tr("Vantrix VPN error — Soulseek is paused")));
    }
    Q_UNREACHABLE();
}

} // namespace

SyncStore::SyncStore(QObject *parent) : QObject(parent), _groups(new PlaylistGroups(this)) {}

bool SyncStore::isRunning() const {
    return _phase == SyncPhase::preparing || _phase == SyncPhase::running || _phase == SyncPhase::finishing;
}

double SyncStore::overallFraction() const {
    const int total = overallTotal();
    return total < 1 ? 0 : static_cast<double>(overallCompleted()) / total;
}

void SyncStore::route(const HelperEvent &event) {
    match(
        event, [this](const HelperEvent::Server &server) { reduce(server.event); },
        [this](const HelperEvent::HelperCrashed &) { interruptAfterCrash(); }, [](const HelperEvent::HelperReady &) {});
}

void SyncStore::reduce(const ServerEvent &event) {
    std::visit([this](const auto &known) { reduce(known); }, event.value);
}

void SyncStore::reduce(const ServerEvent::SyncStarted &event) {
    setRunId(event.runId);
    setSummary(std::nullopt);
    _groups->reset();
    _trackIndex.clear();
    setPhase(SyncPhase::running);
}

void SyncStore::reduce(const ServerEvent::PlaylistStarted &event) {
    std::vector<std::unique_ptr<TrackModel>> tracks;
    tracks.reserve(event.tracks.size());
    for (const TrackDTO &track : event.tracks)
        tracks.push_back(std::make_unique<TrackModel>(track));
    const int position = _groups->count();
    auto group = std::make_unique<PlaylistGroup>(event.playlistId, event.name, event.index, std::move(tracks));
    _trackIndex.reserve(_trackIndex.size() + group->total());
    for (int row = 0; const TrackModel *track : group->tracks())
        _trackIndex.insert(track->id(), Position{position, row++});
    // Last, so that whoever hears of the group finds its rows known.
    _groups->append(std::move(group));
}

void SyncStore::reduce(const ServerEvent::TrackStarted &event) {
    mutateTrack(event.trackId, [](TrackModel &track) { track.setState(TrackState::checkingDisk()); });
}

void SyncStore::reduce(const ServerEvent::DiskCheck &event) {
    mutateTrack(event.trackId, [&](TrackModel &track) {
        track.setDiskResult(event.result);
        track.setState(event.result == DiskCheckResult::present ? TrackState::present(event.meta)
                                                                : TrackState::working(Phase::searching));
    });
}

void SyncStore::reduce(const ServerEvent::Step &event) {
    mutateTrack(event.trackId,
                [&](TrackModel &track) { track.setState(TrackState::working(event.phase, event.detail)); });
}

void SyncStore::reduce(const ServerEvent::DownloadProgress &event) {
    mutateTrack(event.trackId, [&](TrackModel &track) {
        track.setState(TrackState::working(Phase::downloading));
        track.setDownloadFraction(std::clamp(event.percent / 100, 0.0, 1.0));
        track.setProgressDetail(progressText(event));
    });
}

void SyncStore::reduce(const ServerEvent::NeedsReview &event) {
    mutateTrack(event.trackId,
                [&](TrackModel &track) { track.setState(TrackState::awaitingReview(event.candidates)); });
}

void SyncStore::reduce(const ServerEvent::TrackFinished &event) {
    mutateTrack(event.trackId, [&](TrackModel &track) { track.setState(stateAfter(event)); });
}

void SyncStore::reduce(const ServerEvent::PlaylistFinished &event) {
    if (auto *group = _groups->groupWithId(event.playlistId))
        group->setStatus(event.status);
}

void SyncStore::reduce(const ServerEvent::OrphansFound &event) {
    auto *group = event.playlistId ? _groups->groupWithId(*event.playlistId) : nullptr;
    if (group)
        group->appendOrphanPaths(event.paths);
}

void SyncStore::reduce(const ServerEvent::SyncDone &event) {
    setSummary(event.summary);
    setPhase(SyncPhase::done);
}

void SyncStore::reduce(const ServerEvent::ProxyStatus &event) {
    setProxy(event.status, event.detail);
    // An earlier banner outlives the tunnel's being switched off.
    if (auto banner = bannerOf(event))
        setBanner(std::move(banner));
}

void SyncStore::reduce(const ServerEvent::Error &event) {
    // The engine ends a run with syncDone, never with an error.
    setBanner(SyncBanner::error(event.message, event.code));
}

void SyncStore::interruptAfterCrash() {
    if (!isRunning())
        return;
    setPhase(SyncPhase::interrupted);
    setBanner(SyncBanner::warning(Texts::tr("The sync was interrupted. Re-run Sync to continue safely.")));
}

template<typename Body>
void SyncStore::mutateTrack(const QString &id, Body body) {
    const auto position = _trackIndex.constFind(id);
    if (position == _trackIndex.cend() || position->group >= _groups->count())
        return;
    const PlaylistGroup *group = _groups->at(position->group);
    if (position->track >= group->total())
        return;
    TrackModel &track = *group->track(position->track);
    const TrackModel::Changes changes(track);
    body(track);
}

void SyncStore::clearResults() {
    setPhase(SyncPhase::idle);
    _groups->reset();
    setSummary(std::nullopt);
    setRunId(std::nullopt);
    _trackIndex.clear();
}

void SyncStore::markPreparing() {
    setPhase(SyncPhase::preparing);
    setBanner(std::nullopt);
}

void SyncStore::markCancelled() {
    setPhase(SyncPhase::cancelled);
}

void SyncStore::setPhase(SyncPhase phase) {
    if (phase == _phase)
        return;
    _phase = phase;
    Q_EMIT phaseChanged();
}

void SyncStore::setBanner(std::optional<SyncBanner> banner) {
    if (banner == _banner)
        return;
    _banner = std::move(banner);
    Q_EMIT bannerChanged();
}

void SyncStore::setSummary(std::optional<SyncSummary> summary) {
    if (summary == _summary)
        return;
    _summary = summary;
    Q_EMIT summaryChanged();
}

void SyncStore::setRunId(std::optional<QString> runId) {
    if (runId == _runId)
        return;
    _runId = std::move(runId);
    Q_EMIT runIdChanged();
}

void SyncStore::setProxy(ProxyStatusValue status, const std::optional<QString> &detail) {
    const bool isOtherStatus = std::exchange(_proxyStatus, status) != status;
    const bool isOtherDetail = std::exchange(_proxyDetail, detail) != detail;
    if (isOtherStatus)
        Q_EMIT proxyStatusChanged();
    if (isOtherDetail)
        Q_EMIT proxyDetailChanged();
}

QVariant SyncStore::bannerValue() const {
    return _banner ? QVariant::fromValue(*_banner) : QVariant::fromValue(nullptr);
}

} // namespace zelk

#include "State/TrackModel.h"

#include <utility>

namespace zelk {

TrackModel::TrackModel(TrackDTO dto) : _dto(std::move(dto)) {}

TrackModel::TrackModel(const PreviewTrackDTO &track) : _dto(track.track()) {
    switch (track.onDisk) {
    case PreviewTrackDTO::OnDisk::present:
        _state = TrackState::present(track.meta);
        _diskResult = DiskCheckResult::present;
        break;
    case PreviewTrackDTO::OnDisk::missing:
        _diskResult = DiskCheckResult::missing;
        break;
    }
}

TrackModel::TrackModel(QString id, QString title, QString artist, double durationSec)
    : _dto{std::move(id), std::move(title), std::move(artist), std::nullopt, durationSec, ArtworkRef::none()} {}

std::optional<TrackMeta> TrackModel::displayMeta() const {
    const TrackMeta *meta = _state.displayMeta();
    return meta ? std::optional(*meta) : std::nullopt;
}

void TrackModel::setState(TrackState state) {
    if (state == _state)
        return;
    const TrackState old = std::exchange(_state, std::move(state));
    Q_EMIT stateChanged();
    if (old.statusRole() != _state.statusRole())
        Q_EMIT statusRoleChanged();
    if (old.isFinished() != _state.isFinished())
        Q_EMIT isFinishedChanged();
    if (old.progressFraction(_downloadFraction) != progressFraction())
        Q_EMIT progressFractionChanged();
    tell(tallyOf(old) == tallyOf(_state) ? Field::State : Field::State | Field::Tally);
}

void TrackModel::setDownloadFraction(double fraction) {
    if (fraction == _downloadFraction)
        return;
    const auto old = progressFraction();
    _downloadFraction = fraction;
    Q_EMIT downloadFractionChanged();
    if (old != progressFraction())
        Q_EMIT progressFractionChanged();
    tell(Field::DownloadFraction);
}

void TrackModel::setProgressDetail(std::optional<QString> detail) {
    if (detail == _progressDetail)
        return;
    _progressDetail = std::move(detail);
    Q_EMIT progressDetailChanged();
    tell(Field::ProgressDetail);
}

void TrackModel::setDiskResult(std::optional<DiskCheckResult> result) {
    if (result == _diskResult)
        return;
    _diskResult = result;
    Q_EMIT diskResultChanged();
    tell(Field::DiskResult);
}

QVariant TrackModel::progressFractionValue() const {
    const auto fraction = progressFraction();
    return fraction ? QVariant(*fraction) : QVariant::fromValue(nullptr);
}

void TrackModel::tell(Fields fields) {
    _gathered |= fields;
    if (_gathering == 0)
        tellObserver();
}

void TrackModel::endGathering() {
    if (--_gathering == 0)
        tellObserver();
}

void TrackModel::tellObserver() {
    const Fields fields = std::exchange(_gathered, {});
    if (fields && _observer)
        _observer->trackChanged(_row, fields);
}

} // namespace zelk

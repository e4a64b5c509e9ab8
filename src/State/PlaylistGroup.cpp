#include "State/PlaylistGroup.h"

#include "State/PlaylistGroups.h"

#include <algorithm>
#include <utility>

namespace zelk {

PlaylistGroup::PlaylistGroup(QString id, QString name, qint64 index, std::vector<std::unique_ptr<TrackModel>> tracks)
    : _playlistId(std::move(id)), _name(std::move(name)), _index(index) {
    _tracks.reserve(static_cast<qsizetype>(tracks.size()));
    for (auto &track : tracks) {
        track->_observer = this;
        track->_row = static_cast<int>(_tracks.size());
        // With a parent a row is ours in the eyes of QML too, which takes over what it is handed without one.
        track->setParent(this);
        _tracks.append(track.release());
    }
}

void PlaylistGroup::setStatus(std::optional<Finish> status) {
    if (status == _status)
        return;
    _status = status;
    Q_EMIT statusChanged();
    tell(Field::Status);
}

void PlaylistGroup::appendOrphanPaths(const QStringList &paths) {
    if (paths.isEmpty())
        return;
    _orphanPaths.append(paths);
    Q_EMIT orphanPathsChanged();
    tell(Field::OrphanPaths);
}

void PlaylistGroup::setCollapsed(bool isCollapsed) {
    if (isCollapsed == _isCollapsed)
        return;
    _isCollapsed = isCollapsed;
    Q_EMIT isCollapsedChanged();
    tell(Field::IsCollapsed);
}

template<typename... Tallies>
int PlaylistGroup::count(Tallies... tallies) const {
    return static_cast<int>(std::ranges::count_if(_tracks, [=](const TrackModel *track) {
        const TrackTally tally = tallyOf(track->state());
        return ((tally == tallies) || ...);
    }));
}

int PlaylistGroup::completed() const {
    return count(TrackTally::complete, TrackTally::failed);
}
int PlaylistGroup::activeCount() const {
    return count(TrackTally::active);
}
int PlaylistGroup::reviewCount() const {
    return count(TrackTally::review);
}
int PlaylistGroup::failedCount() const {
    return count(TrackTally::failed);
}

double PlaylistGroup::fraction() const {
    return total() > 0 ? static_cast<double>(completed()) / total() : 0;
}

void PlaylistGroup::trackChanged(int row, TrackModel::Fields fields) {
    if (fields & TrackModel::Field::Tally)
        Q_EMIT countsChanged();
    if (!_list)
        return;
    Q_EMIT _list->rowChanged(this, row, fields);
    // Whoever heard of the row may have replaced the list's contents.
    if (_list && (fields & TrackModel::Field::Tally))
        Q_EMIT _list->countsChanged();
}

void PlaylistGroup::tell(Fields fields) {
    if (_list)
        Q_EMIT _list->groupChanged(this, fields);
}

} // namespace zelk

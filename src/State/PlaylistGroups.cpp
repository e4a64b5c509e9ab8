#include "State/PlaylistGroups.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zelk {

PlaylistGroup *PlaylistGroups::groupWithId(const QString &id) const {
    const auto found = std::ranges::find_if(_groups, [&](const PlaylistGroup *group) { return group->id() == id; });
    return found == _groups.cend() ? nullptr : *found;
}

void PlaylistGroups::append(std::unique_ptr<PlaylistGroup> group) {
    const int first = count();
    adopt(std::move(group));
    Q_EMIT groupsAppended(first, 1);
    Q_EMIT countChanged();
    Q_EMIT countsChanged();
}

void PlaylistGroups::reset(std::vector<std::unique_ptr<PlaylistGroup>> groups) {
    if (_groups.isEmpty() && groups.empty())
        return;
    Q_EMIT groupsAboutToBeReset();
    const auto old = std::exchange(_groups, {});
    for (PlaylistGroup *group : old) {
        group->_list = nullptr;
        group->_position = -1;
        // They stay our children, so that they go with us if the event loop has no turn left to delete them in.
        group->deleteLater();
    }
    for (auto &group : groups)
        adopt(std::move(group));
    Q_EMIT groupsReset();
    if (old.size() != _groups.size())
        Q_EMIT countChanged();
    Q_EMIT countsChanged();
}

void PlaylistGroups::adopt(std::unique_ptr<PlaylistGroup> group) {
    group->setParent(this);
    group->_list = this;
    group->_position = count();
    _groups.append(group.release());
}

int PlaylistGroups::sum(int (PlaylistGroup::*figure)() const) const {
    return std::accumulate(_groups.cbegin(), _groups.cend(), 0,
                           [=](int sum, const PlaylistGroup *group) { return sum + (group->*figure)(); });
}

int PlaylistGroups::total() const {
    return sum(&PlaylistGroup::total);
}
int PlaylistGroups::completed() const {
    return sum(&PlaylistGroup::completed);
}
int PlaylistGroups::reviewCount() const {
    return sum(&PlaylistGroup::reviewCount);
}
int PlaylistGroups::failedCount() const {
    return sum(&PlaylistGroup::failedCount);
}

QList<TrackModel *> PlaylistGroups::reviewQueue() const {
    QList<TrackModel *> queue;
    for (const PlaylistGroup *group : _groups) {
        std::ranges::copy_if(group->tracks(), std::back_inserter(queue), [](const TrackModel *track) {
            return caseOf<TrackState::AwaitingReview>(track->state()) != nullptr;
        });
    }
    return queue;
}

} // namespace zelk

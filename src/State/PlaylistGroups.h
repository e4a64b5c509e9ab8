#pragma once

#include "State/PlaylistGroup.h"

namespace zelk {

/// An ordered list of groups that tells exactly what changes in it, in its groups and in their rows, so that one list
/// model follows a run of any length with a handful of connections. Groups are only appended, or replaced all at once;
/// what is replaced lives on until control returns to the event loop, so that whoever holds a row in this turn may
/// still read it.
class PlaylistGroups final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    using QObject::QObject;

    int count() const { return static_cast<int>(_groups.size()); }
    bool isEmpty() const { return _groups.isEmpty(); }
    const QList<PlaylistGroup *> &groups() const { return _groups; }
    /// Null outside of the list.
    Q_INVOKABLE zelk::PlaylistGroup *at(int position) const { return _groups.value(position); }
    /// The first group with that id; null without one.
    PlaylistGroup *groupWithId(const QString &id) const;

    void append(std::unique_ptr<PlaylistGroup> group);
    /// Replaces everything. Nothing is told when there is nothing before and after.
    void reset(std::vector<std::unique_ptr<PlaylistGroup>> groups = {});

    // Sums over all groups. Each read walks all rows: read them at most once a frame.
    int total() const;
    int completed() const;
    int reviewCount() const;
    int failedCount() const;
    /// The rows that await review, groups in their order and rows in theirs.
    QList<TrackModel *> reviewQueue() const;

Q_SIGNALS:
    /// `count` groups were put at the end, the first of them at position `first`.
    void groupsAppended(int first, int count);
    /// Everything is about to be replaced, and has been.
    void groupsAboutToBeReset();
    void groupsReset();
    void countChanged();

    void rowChanged(zelk::PlaylistGroup *group, int row, zelk::TrackModel::Fields fields);
    void groupChanged(zelk::PlaylistGroup *group, zelk::PlaylistGroup::Fields fields);
    /// Any of the sums may now be another. Comes with each row that counts as something else, and with each change of
    /// the list, so gather it.
    void countsChanged();

private:
    friend class PlaylistGroup;

    void adopt(std::unique_ptr<PlaylistGroup> group);
    int sum(int (PlaylistGroup::*figure)() const) const;

    QList<PlaylistGroup *> _groups;
};

} // namespace zelk

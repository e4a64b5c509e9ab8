#include "Views/TrackListModel.h"

#include "Styling/Measures.h"
#include "Transport/Tagged.h"
#include "Views/TrackListEntries.h"

#include <algorithm>

namespace zelk {

TrackListModel::TrackListModel(PlaylistLookup playlistMeta, QObject *parent)
    : MeasuredListModel(parent), m_playlistMeta(std::move(playlistMeta)), m_tick([this] { flush(); }) {}

void TrackListModel::setGroups(PlaylistGroups *groups) {
    if (m_groups == groups)
        return;
    beginResetModel();
    if (m_groups)
        m_groups->disconnect(this);
    clear();
    m_groups = groups;
    fill();
    endResetModel();
    Q_EMIT contentHeightChanged();
    if (!m_groups)
        return;
    connect(m_groups, &PlaylistGroups::groupsAppended, this, &TrackListModel::appended);
    connect(m_groups, &PlaylistGroups::groupChanged, this, &TrackListModel::groupChanged);
    connect(m_groups, &PlaylistGroups::rowChanged, this, &TrackListModel::rowChanged);
    connect(m_groups, &PlaylistGroups::groupsAboutToBeReset, this, [this] { beginResetModel(); });
    connect(m_groups, &PlaylistGroups::groupsReset, this, [this] {
        clear();
        fill();
        endResetModel();
        Q_EMIT contentHeightChanged();
    });
}

void TrackListModel::clear() {
    m_geometry.clear();
    m_collapsed.clear();
    m_dirtyRows.clear();
    m_dirtyGroups.clear();
    if (std::exchange(m_showsDownloads, false))
        Q_EMIT showsDownloadsChanged();
}

void TrackListModel::fill() {
    if (!m_groups)
        return;
    for (const PlaylistGroup *group : m_groups->groups()) {
        m_geometry.append(static_cast<int>(group->tracks().size()), group->isCollapsed());
        m_collapsed.push_back(group->isCollapsed());
        for (const TrackModel *track : group->tracks())
            noteDownload(*track);
    }
}

void TrackListModel::appended(int first, int count) {
    const int begin = m_geometry.elementCount();
    TableGeometry grown = m_geometry;
    for (int i = first; i < first + count; ++i) {
        const PlaylistGroup *group = m_groups->at(i);
        grown.append(static_cast<int>(group->tracks().size()), group->isCollapsed());
        m_collapsed.push_back(group->isCollapsed());
    }
    beginInsertRows({}, begin, grown.elementCount() - 1);
    m_geometry = std::move(grown);
    endInsertRows();
    Q_EMIT contentHeightChanged();
}

void TrackListModel::groupChanged(PlaylistGroup *group, PlaylistGroup::Fields fields) {
    const int position = group->position();
    if (position < 0 || position >= m_geometry.groupCount())
        return;
    if (fields & PlaylistGroup::Field::IsCollapsed)
        setCollapsed(position, group->isCollapsed());
    m_dirtyGroups[position] |= fields;
    m_tick.request();
}

void TrackListModel::setCollapsed(int group, bool collapsed) {
    const auto at = static_cast<std::size_t>(group);
    if (m_collapsed[at] == collapsed)
        return;
    m_collapsed[at] = collapsed;
    TableGeometry next = m_geometry;
    next.setCollapsed(group, collapsed);
    const TableGeometry::Range range = (collapsed ? m_geometry : next).collapsible(group);
    if (collapsed)
        beginRemoveRows({}, range.first, range.first + range.count - 1);
    else
        beginInsertRows({}, range.first, range.first + range.count - 1);
    m_geometry = std::move(next);
    if (collapsed)
        endRemoveRows();
    else
        endInsertRows();
    Q_EMIT contentHeightChanged();
    const QModelIndex header = index(m_geometry.elementOf(group));
    Q_EMIT dataChanged(header, header, {CollapsedRole});
}

void TrackListModel::rowChanged(PlaylistGroup *group, int row, TrackModel::Fields fields) {
    const int position = group->position();
    if (position < 0 || position >= m_geometry.groupCount())
        return;
    if (fields & TrackModel::Field::State)
        noteDownload(*group->tracks()[row]);
    if (fields & TrackModel::Field::Tally)
        m_dirtyGroups[position] |= PlaylistGroup::Fields();
    m_dirtyRows[RowKey{position, row}] |= fields;
    m_tick.request();
}

void TrackListModel::noteDownload(const TrackModel &track) {
    if (m_showsDownloads)
        return;
    const auto *working = caseOf<TrackState::Working>(track.state());
    if (!working || working->phase != Phase::downloading)
        return;
    m_showsDownloads = true;
    Q_EMIT showsDownloadsChanged();
}

void TrackListModel::flush() {
    struct Change {
        int element;
        bool state;
    };
    std::vector<Change> changes;
    changes.reserve(static_cast<std::size_t>(m_dirtyRows.size()));
    for (auto dirty = m_dirtyRows.cbegin(); dirty != m_dirtyRows.cend(); ++dirty) {
        const int element = m_geometry.elementOf(dirty.key().group, dirty.key().row);
        if (element >= 0)
            changes.push_back({element, dirty.value().testFlag(TrackModel::Field::State)});
    }
    m_dirtyRows.clear();
    std::sort(changes.begin(), changes.end(), [](const Change &a, const Change &b) { return a.element < b.element; });
    const QHash<int, PlaylistGroup::Fields> groups = std::exchange(m_dirtyGroups, {});
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        const QModelIndex header = index(m_geometry.elementOf(group.key()));
        QList<int> roles{CountsRole};
        if (group.value() & PlaylistGroup::Field::Status)
            roles += BadgeRole;
        Q_EMIT dataChanged(header, header, roles);
    }
    // Neighbours that changed alike are told of together.
    for (auto first = changes.begin(); first != changes.end();) {
        auto last = first;
        while (last + 1 != changes.end() && (last + 1)->element == last->element + 1 &&
               (last + 1)->state == first->state)
            ++last;
        const QList<int> roles = first->state ? QList<int>{StateRole, ProgressRole} : QList<int>{ProgressRole};
        Q_EMIT dataChanged(index(first->element), index(last->element), roles);
        first = last + 1;
    }
}

PlaylistGroup *TrackListModel::groupAt(int index) const {
    if (!m_groups || index < 0 || index >= m_geometry.elementCount())
        return nullptr;
    const TableGeometry::Place place = m_geometry.placeOf(index);
    return place.kind == TableGeometry::Kind::groupHeader ? m_groups->at(place.group) : nullptr;
}

TrackModel *TrackListModel::trackAt(int index) const {
    if (!m_groups || index < 0 || index >= m_geometry.elementCount())
        return nullptr;
    const TableGeometry::Place place = m_geometry.placeOf(index);
    return place.kind == TableGeometry::Kind::row ? m_groups->at(place.group)->track(place.row) : nullptr;
}

int TrackListModel::indexOf(const QString &trackId) const {
    if (!m_groups || trackId.isEmpty())
        return -1;
    for (int group = 0; group < m_groups->count(); ++group) {
        const QList<TrackModel *> &tracks = m_groups->at(group)->tracks();
        const auto found = std::find_if(tracks.cbegin(), tracks.cend(),
                                        [&trackId](const TrackModel *track) { return track->id() == trackId; });
        if (found != tracks.cend())
            return m_geometry.elementOf(group, static_cast<int>(found - tracks.cbegin()));
    }
    return -1;
}

void TrackListModel::playlistsChanged() {
    for (int group = 0; group < m_geometry.groupCount(); ++group) {
        const QModelIndex header = index(m_geometry.elementOf(group));
        Q_EMIT dataChanged(header, header, {SourceRole});
    }
}

void TrackListModel::setHalted(bool halted) {
    if (m_halted == halted)
        return;
    m_halted = halted;
    if (const int count = rowCount(); count > 0)
        Q_EMIT dataChanged(index(0), index(count - 1), {StateRole});
}

void TrackListModel::setUnderReview(const TrackModel *track) {
    const QString id = track ? track->id() : QString();
    if (m_underReview == id)
        return;
    const QString before = std::exchange(m_underReview, id);
    tellRow(before);
    tellRow(id);
}

void TrackListModel::tellRow(const QString &trackId) {
    const int element = indexOf(trackId);
    if (element >= 0)
        Q_EMIT dataChanged(index(element), index(element), {ReviewRole});
}

int TrackListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_geometry.elementCount();
}

QVariant TrackListModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role == KindRole)
        return kindOf(index.row());
    const PlaylistGroup *group = groupAt(index.row());
    const TrackModel *track = trackAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return group ? group->name() : track ? track->title() : QString();
    case StateRole:
        return track ? QVariant(static_cast<int>(track->statusRole())) : QVariant();
    case ProgressRole:
        return track ? QVariant(track->downloadFraction()) : QVariant();
    case CountsRole:
        return group ? QVariant(group->completed()) : QVariant();
    case BadgeRole:
        return group && group->status() ? QVariant(static_cast<int>(*group->status())) : QVariant();
    case CollapsedRole:
        return group ? QVariant(group->isCollapsed()) : QVariant();
    case SourceRole:
        return group ? QVariant(static_cast<int>(m_playlistMeta(group->id()).source)) : QVariant();
    case ReviewRole:
        return track ? QVariant(track->id() == m_underReview) : QVariant();
    default:
        return {};
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const {
    return {{Qt::DisplayRole, "display"}, {KindRole, "kind"},     {StateRole, "state"},
            {ProgressRole, "progress"},   {CountsRole, "counts"}, {BadgeRole, "badge"},
            {CollapsedRole, "collapsed"}, {SourceRole, "source"}, {ReviewRole, "underReview"}};
}

int TrackListModel::kindOf(int index) const {
    switch (m_geometry.placeOf(index).kind) {
    case TableGeometry::Kind::groupHeader:
        return GroupHeader;
    case TableGeometry::Kind::columnHead:
        return ColumnHeads;
    case TableGeometry::Kind::row:
        return Row;
    case TableGeometry::Kind::blankRow:
    case TableGeometry::Kind::tail:
        return -1;
    }
    return -1;
}

bool TrackListModel::canBeCurrent(int index) const {
    const int kind = kindOf(index);
    return kind == GroupHeader || kind == Row;
}

std::optional<MeasuredListModel::Usual> TrackListModel::usual() const {
    return Usual{Row, Tokens::Size::trackRow};
}

std::unique_ptr<ListEntry> TrackListModel::createEntry(int kind) const {
    if (kind == GroupHeader)
        return std::make_unique<GroupHeaderEntry>();
    if (kind == Row)
        return std::make_unique<TrackRowEntry>();
    return std::make_unique<ListEntry>();
}

void TrackListModel::load(ListEntry &entry, const QList<int> &roles) const {
    if (auto *header = qobject_cast<GroupHeaderEntry *>(&entry)) {
        if (const PlaylistGroup *group = groupAt(entry.index()))
            header->load(*group, m_playlistMeta(group->id()));
        return;
    }
    auto *row = qobject_cast<TrackRowEntry *>(&entry);
    const TrackModel *track = row ? trackAt(entry.index()) : nullptr;
    if (!track)
        return;
    if (roles.isEmpty()) {
        const TableGeometry::Place place = m_geometry.placeOf(entry.index());
        const bool last = place.row + 1 == m_groups->at(place.group)->total();
        row->load(*track, last, track->id() == m_underReview);
        row->setHalted(m_halted);
        return;
    }
    if (roles.contains(StateRole) || roles.contains(ProgressRole))
        row->loadState(*track);
    row->setHalted(m_halted);
    if (roles.contains(ReviewRole))
        row->setUnderReview(track->id() == m_underReview);
}

} // namespace zelk

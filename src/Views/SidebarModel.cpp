#include "Views/SidebarModel.h"

#include "Styling/Measures.h"

#include <algorithm>

namespace zelk {

void SidebarModel::setRows(std::vector<SidebarRow> rows) {
    const auto same = [](const SidebarRow &a, const SidebarRow &b) { return a.isSame(b); };
    const auto head = std::mismatch(m_rows.begin(), m_rows.end(), rows.begin(), rows.end(), same);
    const auto first = static_cast<int>(head.first - m_rows.begin());
    const auto tail = std::mismatch(m_rows.rbegin(), std::make_reverse_iterator(head.first), rows.rbegin(),
                                    std::make_reverse_iterator(head.second), same);
    const auto kept = static_cast<int>(tail.first - m_rows.rbegin());
    const int gone = static_cast<int>(m_rows.size()) - first - kept;
    const int come = static_cast<int>(rows.size()) - first - kept;
    const std::vector<SidebarRow> before = m_rows;

    if (gone > 0) {
        beginRemoveRows({}, first, first + gone - 1);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + first + gone);
        measure();
        endRemoveRows();
    }
    if (come > 0) {
        beginInsertRows({}, first, first + come - 1);
        m_rows = std::move(rows);
        measure();
        endInsertRows();
    } else {
        m_rows = std::move(rows);
    }
    for (int i = 0; i < rowCount(); ++i) {
        if (i >= first && i < first + come)
            continue;
        const int old = i < first ? i : i - come + gone;
        if (m_rows[static_cast<std::size_t>(i)] != before[static_cast<std::size_t>(old)])
            Q_EMIT dataChanged(index(i), index(i));
    }
    if (gone > 0 || come > 0)
        Q_EMIT contentHeightChanged();
}

void SidebarModel::measure() {
    m_tops.clear();
    m_tops.reserve(m_rows.size() + 1);
    double top = 0;
    for (int i = 0; i < rowCount(); ++i) {
        m_tops.push_back(top);
        top += heightOf(i);
    }
    m_tops.push_back(top);
}

void SidebarModel::setSelection(const QSet<QString> &selection) {
    const QSet<QString> before = std::exchange(m_selection, selection);
    for (int i = 0; i < rowCount(); ++i) {
        const QString &id = m_rows[static_cast<std::size_t>(i)].id;
        if (before.contains(id) != m_selection.contains(id))
            Q_EMIT dataChanged(index(i), index(i), {SelectedRole});
    }
}

const SidebarRow *SidebarModel::rowAt(int index) const {
    return index >= 0 && index < rowCount() ? &m_rows[static_cast<std::size_t>(index)] : nullptr;
}

int SidebarModel::indexOf(const QString &id) const {
    if (id.isEmpty())
        return -1;
    const auto found =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [&id](const SidebarRow &row) { return row.id == id; });
    return found == m_rows.cend() ? -1 : static_cast<int>(found - m_rows.cbegin());
}

int SidebarModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SidebarModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const SidebarRow &row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return row.name;
    case KindRole:
        return static_cast<int>(row.kind);
    case IdRole:
        return row.id;
    case DepthRole:
        return row.depth;
    case SelectedRole:
        return m_selection.contains(row.id);
    default:
        return {};
    }
}

QHash<int, QByteArray> SidebarModel::roleNames() const {
    return {{Qt::DisplayRole, "display"},
            {KindRole, "kind"},
            {IdRole, "playlistId"},
            {DepthRole, "depth"},
            {SelectedRole, "selected"}};
}

double SidebarModel::heightOf(int index) const {
    switch (kindOf(index)) {
    case Section:
        return Tokens::scaled(Tokens::Size::sectionHead, textScale());
    case Folder:
        return Tokens::scaled(Tokens::Size::folderRow, textScale());
    default:
        return Tokens::scaled(Tokens::Size::playlistRow, textScale());
    }
}

int SidebarModel::indexAt(double y) const {
    if (m_rows.empty())
        return -1;
    const auto after = std::upper_bound(m_tops.cbegin(), m_tops.cend(), y);
    const auto at = static_cast<int>(after - m_tops.cbegin()) - 1;
    return std::clamp(at, 0, rowCount() - 1);
}

std::unique_ptr<ListEntry> SidebarModel::createEntry(int) const {
    return std::make_unique<SidebarEntry>();
}

void SidebarModel::load(ListEntry &entry, const QList<int> &) const {
    auto *shown = qobject_cast<SidebarEntry *>(&entry);
    const SidebarRow *row = rowAt(entry.index());
    if (!shown || !row)
        return;
    shown->load(*row);
    shown->setSelected(m_selection.contains(row->id));
}

} // namespace zelk

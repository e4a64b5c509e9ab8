#include "Views/Settings/SourceOrder.h"

#include "Models/ServiceCatalog.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zelk {

int SourceOrder::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_order.size());
}

QVariant SourceOrder::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SourceId id = at(index.row());
    const auto &info = ServiceCatalog::downloadSource(id);
    switch (role) {
    case Name:
        return info.name;
    case Blurb:
        return info.blurb;
    case Symbol:
        return info.assetName;
    case Enabled:
        return m_enabled.contains(id);
    default:
        return {};
    }
}

QHash<int, QByteArray> SourceOrder::roleNames() const {
    return {{Name, "name"}, {Blurb, "blurb"}, {Symbol, "symbol"}, {Enabled, "isEnabled"}};
}

void SourceOrder::fill(const std::vector<SourceId> &first) {
    beginResetModel();
    m_order = first;
    for (const SourceId each : allCases<SourceId>()) {
        if (std::ranges::find(m_order, each) == m_order.end())
            m_order.push_back(each);
    }
    endResetModel();
}

void SourceOrder::move(int from, int to) {
    const int count = rowCount();
    if (from == to || from < 0 || to < 0 || from >= count || to >= count)
        return;
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const SourceId moved = at(from);
    m_order.erase(m_order.begin() + from);
    m_order.insert(m_order.begin() + to, moved);
    endMoveRows();
}

void SourceOrder::setEnabled(std::set<SourceId> enabled) {
    const auto before = std::exchange(m_enabled, std::move(enabled));
    for (int row = 0; row < rowCount(); ++row) {
        if (before.contains(at(row)) != m_enabled.contains(at(row)))
            Q_EMIT dataChanged(index(row), index(row), {Enabled});
    }
}

std::vector<SourceId> SourceOrder::only(const std::set<SourceId> &wanted) const {
    std::vector<SourceId> result;
    std::ranges::copy_if(m_order, std::back_inserter(result),
                         [&wanted](SourceId each) { return wanted.contains(each); });
    return result;
}

} // namespace zelk

#include "Views/TableGeometry.h"

#include "Styling/Measures.h"

#include <algorithm>

namespace zelk {

namespace Size = Tokens::Size;

double TableGeometry::Group::height() const {
    const double table = collapsed ? 0 : Size::columnHead + static_cast<double>(shownRows()) * Size::trackRow;
    return Size::groupCard + table + Size::tableTail;
}

TableGeometry::Range TableGeometry::append(int rows, bool collapsed) {
    Group group{elementCount(), height(), rows, collapsed};
    const Range range{group.firstElement, group.elements()};
    m_groups.push_back(group);
    return range;
}

TableGeometry::Range TableGeometry::collapsible(int group) const {
    const Group &each = m_groups[static_cast<std::size_t>(group)];
    return {each.firstElement + 1, each.shownRows() + 1};
}

void TableGeometry::setCollapsed(int group, bool collapsed) {
    auto at = m_groups.begin() + group;
    at->collapsed = collapsed;
    for (auto next = at + 1; next != m_groups.end(); ++at, ++next) {
        next->firstElement = at->firstElement + at->elements();
        next->y = at->y + at->height();
    }
}

int TableGeometry::elementCount() const {
    return m_groups.empty() ? 0 : m_groups.back().firstElement + m_groups.back().elements();
}

double TableGeometry::height() const {
    return m_groups.empty() ? 0 : m_groups.back().y + m_groups.back().height();
}

const TableGeometry::Group &TableGeometry::groupOfElement(int element) const {
    const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), element,
                                        [](int wanted, const Group &group) { return wanted < group.firstElement; });
    return *(after - 1);
}

TableGeometry::Place TableGeometry::placeOf(int element) const {
    const Group &group = groupOfElement(element);
    const int index = static_cast<int>(&group - m_groups.data());
    const int local = element - group.firstElement;
    if (local == 0)
        return {Kind::groupHeader, index, 0};
    if (local == group.elements() - 1)
        return {Kind::tail, index, 0};
    if (local == 1)
        return {Kind::columnHead, index, 0};
    return {group.rows > 0 ? Kind::row : Kind::blankRow, index, local - 2};
}

int TableGeometry::elementOf(int group) const {
    return m_groups[static_cast<std::size_t>(group)].firstElement;
}

int TableGeometry::elementOf(int group, int row) const {
    const Group &each = m_groups[static_cast<std::size_t>(group)];
    return each.collapsed ? -1 : each.firstElement + 2 + row;
}

double TableGeometry::yOf(int element) const {
    const Group &group = groupOfElement(element);
    const int local = element - group.firstElement;
    if (local == 0)
        return group.y;
    if (local == group.elements() - 1)
        return group.y + group.height() - Size::tableTail;
    if (local == 1)
        return group.y + Size::groupCard;
    return group.y + Size::groupCard + Size::columnHead + static_cast<double>(local - 2) * Size::trackRow;
}

double TableGeometry::heightOf(int element) const {
    switch (placeOf(element).kind) {
    case Kind::groupHeader:
        return Size::groupCard;
    case Kind::columnHead:
        return Size::columnHead;
    case Kind::row:
    case Kind::blankRow:
        return Size::trackRow;
    case Kind::tail:
        return Size::tableTail;
    }
    return 0;
}

int TableGeometry::elementAt(double y) const {
    if (m_groups.empty())
        return -1;
    const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), y,
                                        [](double wanted, const Group &group) { return wanted < group.y; });
    if (after == m_groups.begin())
        return 0;
    const Group &group = *(after - 1);
    const double local = y - group.y;
    if (local < Size::groupCard)
        return group.firstElement;
    const int last = group.firstElement + group.elements() - 1;
    if (group.collapsed || local >= group.height() - Size::tableTail)
        return last;
    if (local < Size::groupCard + Size::columnHead)
        return group.firstElement + 1;
    return group.firstElement + 2 + static_cast<int>((local - Size::groupCard - Size::columnHead) / Size::trackRow);
}

} // namespace zelk

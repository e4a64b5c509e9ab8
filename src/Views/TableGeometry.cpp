#include "Views/TableGeometry.h"

#include "Styling/Measures.h"

#include <algorithm>

namespace zelk {

TableGeometry::Heights::Heights(double textScale)
    : card(Tokens::scaled(Tokens::Size::groupCard, textScale)),
      columnHead(Tokens::scaled(Tokens::Size::columnHead, textScale)),
      row(Tokens::scaled(Tokens::Size::trackRow, textScale)), tail(Tokens::Size::tableTail) {}

double TableGeometry::heightOf(const Group &group) const {
    const double table =
        group.collapsed ? 0 : m_heights.columnHead + static_cast<double>(group.shownRows()) * m_heights.row;
    return m_heights.card + table + m_heights.tail;
}

void TableGeometry::setTextScale(double scale) {
    m_heights = Heights(scale);
    if (!m_groups.empty())
        placeAfter(m_groups.begin());
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
    placeAfter(at);
}

void TableGeometry::placeAfter(std::vector<Group>::iterator first) {
    auto at = first;
    for (auto next = at + 1; next != m_groups.end(); ++at, ++next) {
        next->firstElement = at->firstElement + at->elements();
        next->y = at->y + heightOf(*at);
    }
}

int TableGeometry::elementCount() const {
    return m_groups.empty() ? 0 : m_groups.back().firstElement + m_groups.back().elements();
}

double TableGeometry::height() const {
    return m_groups.empty() ? 0 : m_groups.back().y + heightOf(m_groups.back());
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
        return group.y + heightOf(group) - m_heights.tail;
    if (local == 1)
        return group.y + m_heights.card;
    return group.y + m_heights.card + m_heights.columnHead + static_cast<double>(local - 2) * m_heights.row;
}

double TableGeometry::heightOf(int element) const {
    switch (placeOf(element).kind) {
    case Kind::groupHeader:
        return m_heights.card;
    case Kind::columnHead:
        return m_heights.columnHead;
    case Kind::row:
    case Kind::blankRow:
        return m_heights.row;
    case Kind::tail:
        return m_heights.tail;
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
    if (local < m_heights.card)
        return group.firstElement;
    const int last = group.firstElement + group.elements() - 1;
    if (group.collapsed || local >= heightOf(group) - m_heights.tail)
        return last;
    if (local < m_heights.card + m_heights.columnHead)
        return group.firstElement + 1;
    return group.firstElement + 2 + static_cast<int>((local - m_heights.card - m_heights.columnHead) / m_heights.row);
}

} // namespace zelk

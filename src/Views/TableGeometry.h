#pragma once

#include <vector>

// Where everything stands in a column of tables: a header card per group and, while it isn't collapsed, a column head
// and one row of fixed height per track (one blank row where there are none); then the space that ends the group. All
// heights are known, so every place is exact, and finding one takes O(log groups) however many rows there are.
namespace zelk {

class TableGeometry {
public:
    enum class Kind { groupHeader, columnHead, row, blankRow, tail };

    // One element of the flattened column.
    struct Place {
        Kind kind = Kind::tail;
        int group = 0;
        int row = 0; // in its group; meaningful for Kind::row
        bool operator==(const Place &) const = default;
    };

    // A run of elements.
    struct Range {
        int first = 0;
        int count = 0;
    };

    void clear() { m_groups.clear(); }
    // The elements that the new group adds at the end.
    Range append(int rows, bool collapsed);
    // The elements that go, or come, when the group changes to that state; call before setCollapsed.
    Range collapsible(int group) const;
    void setCollapsed(int group, bool collapsed);

    // How much larger than usual text is: what holds it grows.
    void setTextScale(double scale);

    int groupCount() const { return static_cast<int>(m_groups.size()); }
    int elementCount() const;
    double height() const; // logical pixels

    Place placeOf(int element) const;
    int elementOf(int group) const;          // its header
    int elementOf(int group, int row) const; // -1 while collapsed
    double yOf(int element) const;
    double heightOf(int element) const;
    // The element at that y; the first or the last beyond the ends, -1 when there are none.
    int elementAt(double y) const;

private:
    // The heights of the elements at one scale of text.
    struct Heights {
        explicit Heights(double textScale);

        int card;
        int columnHead;
        int row;
        int tail;
    };

    struct Group {
        int firstElement = 0;
        double y = 0;
        int rows = 0;
        bool collapsed = false;

        int shownRows() const { return rows > 0 ? rows : 1; }
        int elements() const { return collapsed ? 2 : shownRows() + 3; }
    };

    const Group &groupOfElement(int element) const;
    double heightOf(const Group &group) const;
    void placeAfter(std::vector<Group>::iterator first);

    Heights m_heights{1};
    std::vector<Group> m_groups;
};

} // namespace zelk

#include "Views/TableGeometry.h"

#include <QRandomGenerator>
#include <QTest>

#include <vector>

using namespace zelk;
using Kind = TableGeometry::Kind;
using Place = TableGeometry::Place;

namespace {

struct Group {
    int rows;
    bool collapsed;
};

struct Element {
    Place place;
    double y;
    double height;
};

// The same column laid out one element after the other.
std::vector<Element> laidOut(const std::vector<Group> &groups, double textScale) {
    std::vector<Element> elements;
    double y = 0;
    const auto add = [&](Kind kind, int group, int row, double height) {
        elements.push_back({{kind, group, row}, y, height});
        y += height;
    };
    for (int g = 0; g < static_cast<int>(groups.size()); ++g) {
        const Group &group = groups[static_cast<std::size_t>(g)];
        add(Kind::groupHeader, g, 0, 80 * textScale);
        if (!group.collapsed) {
            add(Kind::columnHead, g, 0, 28 * textScale);
            for (int row = 0; row < group.rows; ++row)
                add(Kind::row, g, row, 34 * textScale);
            if (group.rows == 0)
                add(Kind::blankRow, g, 0, 34 * textScale);
        }
        add(Kind::tail, g, 0, 12);
    }
    return elements;
}

void compare(const TableGeometry &geometry, const std::vector<Group> &groups, double textScale = 1) {
    const std::vector<Element> expected = laidOut(groups, textScale);
    QCOMPARE(geometry.elementCount(), static_cast<int>(expected.size()));
    for (int i = 0; i < geometry.elementCount(); ++i) {
        const Element &element = expected[static_cast<std::size_t>(i)];
        QCOMPARE(geometry.placeOf(i), element.place);
        QCOMPARE(geometry.yOf(i), element.y);
        QCOMPARE(geometry.heightOf(i), element.height);
        QCOMPARE(geometry.elementAt(element.y), i);
        QCOMPARE(geometry.elementAt(element.y + element.height - 0.01), i);
        if (element.place.kind == Kind::row)
            QCOMPARE(geometry.elementOf(element.place.group, element.place.row), i);
        if (element.place.kind == Kind::groupHeader)
            QCOMPARE(geometry.elementOf(element.place.group), i);
    }
    if (!expected.empty()) {
        QCOMPARE(geometry.height(), expected.back().y + expected.back().height);
        QCOMPARE(geometry.elementAt(-5), 0);
        QCOMPARE(geometry.elementAt(geometry.height() + 5), geometry.elementCount() - 1);
    }
}

} // namespace

class TableGeometryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingHasNoHeight() {
        const TableGeometry geometry;
        QCOMPARE(geometry.elementCount(), 0);
        QCOMPARE(geometry.height(), 0.0);
        QCOMPARE(geometry.elementAt(10), -1);
    }

    void anEmptyGroupHasATableOfOneRow() {
        TableGeometry geometry;
        geometry.append(0, false);
        QCOMPARE(geometry.height(), 80.0 + 28 + 34 + 12);
        compare(geometry, {{0, false}});
    }

    void everyPlaceIsExactWhateverCollapses() {
        QRandomGenerator random(7);
        for (int round = 0; round < 30; ++round) {
            TableGeometry geometry;
            std::vector<Group> groups;
            for (int g = 0; g < 12; ++g) {
                const Group group{random.bounded(6), random.bounded(4) == 0};
                const auto before = geometry.elementCount();
                const auto range = geometry.append(group.rows, group.collapsed);
                QCOMPARE(range.first, before);
                QCOMPARE(range.count, geometry.elementCount() - before);
                groups.push_back(group);
            }
            compare(geometry, groups);
            for (int toggle = 0; toggle < 6; ++toggle) {
                const int g = random.bounded(12);
                Group &group = groups[static_cast<std::size_t>(g)];
                const auto range = geometry.collapsible(g);
                const int before = geometry.elementCount();
                group.collapsed = !group.collapsed;
                geometry.setCollapsed(g, group.collapsed);
                QCOMPARE(geometry.elementCount(), before + (group.collapsed ? -range.count : range.count));
                QCOMPARE(geometry.elementOf(g, 0), group.collapsed ? -1 : range.first + 1);
                compare(geometry, groups);
            }
        }
    }

    void everyPlaceIsExactAtEveryScaleOfText() {
        TableGeometry geometry;
        geometry.setTextScale(1.5);
        geometry.append(3, false);
        geometry.append(0, true);
        geometry.append(2, false);
        compare(geometry, {{3, false}, {0, true}, {2, false}}, 1.5);
        geometry.setTextScale(1);
        compare(geometry, {{3, false}, {0, true}, {2, false}});
        geometry.setTextScale(1.5);
        geometry.setCollapsed(0, true);
        compare(geometry, {{3, true}, {0, true}, {2, false}}, 1.5);
        geometry.clear();
        geometry.append(1, false);
        compare(geometry, {{1, false}}, 1.5);
    }
};

QTEST_APPLESS_MAIN(TableGeometryTest)
#include "tst_tablegeometry.moc"

#include "Groups.h"

#include "Views/ListWindow.h"
#include "Views/TrackListEntries.h"
#include "Views/TrackListModel.h"

#include <QQmlEngine>
#include <QQuickView>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto scene = R"(
import QtQuick
import test
Flickable {
    id: flick
    objectName: "flick"
    property alias column: column
    contentHeight: column.implicitHeight
    ListWindow {
        id: column
        objectName: "column"
        width: flick.width
        height: implicitHeight
        viewTop: flick.contentY
        viewHeight: flick.height
        onContentShifted: delta => flick.contentY = Math.max(0, flick.contentY + delta)
        delegates: [
            Component { Item { required property GroupEntry entry; property string said: entry.name } },
            Component { Item { required property Entry entry; property string said: "columns" } },
            Component { Item { required property RowEntry entry; property string said: entry.title } }
        ]
    }
}
)";

struct Bench {
    PlaylistGroups groups;
    TrackListModel model{[](const QString &) { return TrackListModel::PlaylistMeta(); }};
    QQuickView view;
    ListWindow *column = nullptr;
    QQuickItem *flick = nullptr;

    // `count` groups of `rows` rows each, in a view of 400 by 600.
    Bench(int count, int rows) {
        qmlRegisterType<ListWindow>("test", 1, 0, "ListWindow");
        qmlRegisterUncreatableType<ListEntry>("test", 1, 0, "Entry", {});
        qmlRegisterUncreatableType<GroupHeaderEntry>("test", 1, 0, "GroupEntry", {});
        qmlRegisterUncreatableType<TrackRowEntry>("test", 1, 0, "RowEntry", {});
        for (int g = 0; g < count; ++g)
            groups.append(makeGroup(u"g%1"_s.arg(g), rows));
        model.setGroups(&groups);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        QQmlComponent component(view.engine());
        component.setData(scene, QUrl());
        flick = qobject_cast<QQuickItem *>(component.create());
        if (!flick)
            qFatal("%s", qPrintable(component.errorString()));
        view.setContent(QUrl(), nullptr, flick);
        view.resize(400, 600);
        column = flick->property("column").value<ListWindow *>();
        column->setModel(&model);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view))
            qFatal("no window");
        fill();
    }

    // Lets the first frames pass, in which the delegates are made.
    void fill() {
        column->ensurePolished();
        if (!QTest::qWaitFor([this] { return column->isFilled(); }))
            qFatal("the view doesn't fill");
    }

    // What is drawn at a y of the view, by the title of the group or row; empty for room.
    QString drawnAt(double y) {
        column->ensurePolished();
        QString found;
        for (QQuickItem *item : column->childItems()) {
            const QPointF local = item->mapFromScene(QPointF(10, y));
            if (item->isVisible() && item->contains(local)) {
                if (!found.isEmpty())
                    return u"two at once: "_s + found + u" and "_s + item->property("said").toString();
                found = item->property("said").toString();
            }
        }
        return found;
    }
    // What belongs at a y of the view.
    QString placedAt(double y) const {
        const int index = model.indexAt(flick->property("contentY").toDouble() + y);
        if (model.kindOf(index) == TrackListModel::ColumnHeads)
            return u"columns"_s;
        return model.data(model.index(index), Qt::DisplayRole).toString();
    }
    bool isTrue() {
        fill();
        for (double y = 1; y < 600; y += 7) {
            if (drawnAt(y) != placedAt(y)) {
                qWarning() << "at" << y << "is" << drawnAt(y) << "and should be" << placedAt(y);
                return false;
            }
        }
        return true;
    }
    int shown() const {
        int count = 0;
        for (const QQuickItem *item : column->childItems())
            count += item->isVisible();
        return count;
    }
    void scrollTo(double y) { flick->setProperty("contentY", y); }
};

} // namespace

class ListWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHeightIsExactAtTwentyThousandRows() {
        Bench bench(50, 400);
        QCOMPARE(bench.column->implicitHeight(), 50 * (80.0 + 28 + 400 * 34 + 12));
        QVERIFY(bench.isTrue());
    }

    void aViewFillsFromTheTopAFewDelegatesAFrameAndNeverWrong() {
        Bench bench(0, 0);
        bench.groups.append(makeGroup(u"g0"_s, 400));
        int before = bench.column->delegateCount();
        QVERIFY(before < 5);
        bench.column->ensurePolished();
        while (!bench.column->isFilled()) {
            const int made = bench.column->delegateCount();
            QVERIFY(made - before <= 3);
            before = made;
            bool blank = false;
            for (double y = 1; y < 600; y += 7) {
                const QString drawn = bench.drawnAt(y);
                blank = blank || drawn.isEmpty();
                QVERIFY(drawn == (blank ? QString() : bench.placedAt(y)));
            }
            bench.column->polish();
        }
        QVERIFY(bench.isTrue());
    }

    void aFullViewIsMadeAheadOfNeed() {
        Bench bench(0, 0);
        QTRY_VERIFY(bench.column->delegateCount() > (600 + 240) / 34);
        const int ready = bench.column->delegateCount();
        QCOMPARE(bench.shown(), 0);
        bench.groups.append(makeGroup(u"g0"_s, 400));
        bench.column->ensurePolished(); // in one frame
        QVERIFY(bench.column->isFilled());
        QVERIFY(bench.isTrue());
        QVERIFY(bench.column->delegateCount() <= ready + 2); // the card and the column heads
    }

    void afterAJumpTheRowDrawnIsTheOneItsPlaceSays() {
        Bench bench(50, 400);
        const double end = bench.column->implicitHeight() - 600;
        for (const double share : {0.5, 0.999, 0.123, 1.0, 0.0, 0.77}) {
            bench.scrollTo(end * share);
            QVERIFY(bench.isTrue());
        }
    }

    void afterADragInSmallStepsTooAndDelegatesAreUsedAgain() {
        Bench bench(50, 400);
        QVERIFY(bench.isTrue());
        for (int step = 0; step < 300; ++step)
            bench.scrollTo(step * 53.7);
        for (int step = 0; step < 300; ++step) {
            bench.scrollTo(16000 + step * 53.7);
            bench.column->ensurePolished();
        }
        QVERIFY(bench.isTrue());
        QVERIFY2(bench.column->delegateCount() < 80, qPrintable(QString::number(bench.column->delegateCount())));
    }

    void afterACollapseToo() {
        Bench bench(50, 400);
        bench.scrollTo(bench.model.yOf(403 * 20) - 100);
        QVERIFY(bench.isTrue());
        bench.groups.at(20)->setCollapsed(true);
        QVERIFY(bench.isTrue());
        bench.groups.at(20)->setCollapsed(false);
        QVERIFY(bench.isTrue());
        for (int g = 0; g < 50; ++g)
            bench.groups.at(g)->setCollapsed(true);
        bench.scrollTo(0);
        QVERIFY(bench.isTrue());
        QCOMPARE(bench.column->implicitHeight(), 50 * 92.0);
    }

    void whatCollapsesAboveLeavesTheViewInPlace() {
        Bench bench(50, 400);
        bench.scrollTo(bench.model.yOf(403 * 20 + 50));
        const QString top = bench.drawnAt(1);
        bench.groups.at(3)->setCollapsed(true);
        QCOMPARE(bench.drawnAt(1), top);
        QVERIFY(bench.isTrue());
        bench.groups.at(3)->setCollapsed(false);
        QCOMPARE(bench.drawnAt(1), top);
        QVERIFY(bench.isTrue());
    }

    void appendedGroupsShowWhereTheyBelong() {
        Bench bench(1, 2);
        QVERIFY(bench.isTrue());
        bench.groups.append(makeGroup(u"next"_s, 3));
        QVERIFY(bench.isTrue());
        QCOMPARE(bench.drawnAt(80 + 28 + 68 + 12 + 1), u"next"_s);
        bench.groups.reset();
        bench.column->ensurePolished();
        QCOMPARE(bench.drawnAt(5), QString());
    }

    void aChangedRowIsDrawnAnewWhileInView() {
        Bench bench(1, 4);
        bench.column->ensurePolished();
        QQuickItem *item = bench.column->itemAt(3);
        QVERIFY(item);
        auto *entry = item->property("entry").value<TrackRowEntry *>();
        QVERIFY(entry);
        bench.groups.at(0)->track(1)->setState(TrackState::checkingDisk());
        QTRY_COMPARE(entry->statusText(), u"Checking disk"_s);
    }

    void childrenStandInTheOrderOfTheirPlaces() {
        Bench bench(50, 400);
        for (const double y : {9000.0, 3000.0, 200000.0, 199700.0}) {
            bench.scrollTo(y);
            bench.column->ensurePolished();
            QVERIFY(bench.shown() > 15);
            double before = -1;
            for (QQuickItem *item : bench.column->childItems()) {
                if (!item->isVisible())
                    continue;
                QVERIFY(item->y() > before);
                before = item->y();
            }
        }
    }

    void theCurrentElementFollowsItsRow() {
        Bench bench(3, 4);
        bench.column->setCurrentIndex(9); // row 0 of the second group
        bench.groups.at(0)->setCollapsed(true);
        QCOMPARE(bench.column->currentIndex(), 4);
        QCOMPARE(bench.model.trackAt(4)->id(), u"g1/0"_s);
        bench.groups.at(0)->setCollapsed(false);
        QCOMPARE(bench.column->currentIndex(), 9);
        // One that goes hands over to the card above it.
        bench.groups.at(1)->setCollapsed(true);
        QCOMPARE(bench.column->currentIndex(), 7);
        QVERIFY(bench.model.groupAt(7));
    }

    void theKeyboardStepsOverWhatCannotBeCurrent() {
        Bench bench(2, 1);
        QCOMPARE(bench.column->neighbour(-1, 1), 0);
        QCOMPARE(bench.column->neighbour(0, 1), 2); // over the column heads
        QCOMPARE(bench.column->neighbour(2, 1), 4); // over the room between
        QCOMPARE(bench.column->neighbour(6, 1), 6);
        QCOMPARE(bench.column->neighbour(6, -100), 0);
        QCOMPARE(bench.column->neighbour(0, 100), 6);
    }
};

QTEST_MAIN(ListWindowTest)
#include "tst_listwindow.moc"

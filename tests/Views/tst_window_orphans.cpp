#include "Accessible.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class WindowOrphansTest : public QObject {
    Q_OBJECT

    static void find(WindowBench &bench, int count) {
        QStringList paths;
        for (int i = 1; i <= count; ++i)
            paths += u"/music/Gone %1.aiff"_s.arg(i);
        bench.model.orphans()->accumulate(paths);
        QTRY_VERIFY(bench.item("orphansBanner"));
        QTRY_COMPARE(bench.item("orphansBanner")->height(), bench.item("orphansBanner")->implicitHeight());
    }

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theStripStandsUnderEverything() {
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        const auto bottomOf = [](QQuickItem *item) { return item->mapToScene(QPointF(0, item->height())).y(); };
        QVERIFY(!bench.item("orphansBanner"));
        QTRY_COMPARE(bottomOf(bench.item("previewSummaryBar")), bench.content()->height());
        find(bench, 2);
        QQuickItem *strip = bench.item("orphansBanner");
        QCOMPARE(strip->width(), bench.content()->width());
        QCOMPARE(strip->height(), 52.0);
        QCOMPARE(bottomOf(strip), bench.content()->height());
        // It covers neither the pane nor the sidebar.
        QCOMPARE(bottomOf(bench.item("previewSummaryBar")), bench.content()->height() - 52);
        QCOMPARE(bottomOf(bench.item("playlistList")), bench.content()->height() - 52);
        QVERIFY(bench.shows(u"2 leftover files no longer in your playlists"_s));
    }

    void itUnfoldsToTheFilesWithoutTheirFolders() {
        WindowBench bench;
        find(bench, 11);
        QCOMPARE(bench.items("orphansFile").size(), 0);
        QCOMPARE(spoken(bench.item("orphansToggle")), u"Show"_s);
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(bench.items("orphansFile").size(), 10);
        QCOMPARE(spoken(bench.item("orphansToggle")), u"Hide"_s);
        QVERIFY(bench.shows(u"Gone 10.aiff"_s));
        QVERIFY(!bench.shows(u"Gone 11.aiff"_s));
        QVERIFY(bench.shows(u"and 1 more file…"_s));
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(bench.items("orphansFile").size(), 0);
        QTRY_COMPARE(bench.item("orphansBanner")->height(), 52.0);
    }

    void withTenFilesNoneIsLeftOut() {
        WindowBench bench;
        find(bench, 10);
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(bench.items("orphansFile").size(), 10);
        QVERIFY(!bench.item("orphansMore"));
    }

    void unfoldedInTheSmallestWindowItLeavesRoomForRows() {
        WindowBench bench;
        bench.loadLibrary();
        bench.window.window()->resize(880, 600);
        QTRY_COMPARE(bench.content()->height(), 600.0);
        bench.beginRun(1, 30);
        find(bench, 12); // ten files and what is left out
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(bench.items("orphansReveal").size(), 10);
        QTRY_COMPARE(bench.item("orphansBanner")->height(), bench.item("orphansBanner")->implicitHeight());
        QQuickItem *table = bench.item("trackTable");
        QTRY_VERIFY(table->height() >= 12 + 80 + 28 + 4 * 34);
        QVERIFY(table->height() < 12 + 80 + 28 + 5 * 34);
        // Its own list scrolls, and goes with the keyboard.
        QQuickItem *list = bench.item("orphansList");
        QVERIFY(list->height() < 11 * 24);
        QCOMPARE(list->property("contentHeight").toDouble(), 11 * 24.0);
        const auto inView = [list](QQuickItem *item) {
            const double y = item->mapToItem(list, QPointF(0, 0)).y();
            return y >= 0 && y + item->height() <= list->height();
        };
        QTRY_VERIFY(!inView(bench.items("orphansReveal").last()));
        QQuickItem *last = bench.items("orphansReveal").last();
        last->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(inView(last));
        bench.item("orphansReveal", 0)->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(inView(bench.item("orphansReveal", 0)));
        // With room it takes as much as it needs.
        bench.window.window()->resize(880, 780);
        QTRY_COMPARE(list->height(), 11 * 24.0);
    }

    void aFileCanBeShownByPressAndByKey() {
        WindowBench bench;
        find(bench, 3);
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(bench.items("orphansReveal").size(), 3);
        QQuickItem *second = bench.item("orphansReveal", 1);
        QCOMPARE(spoken(second), u"Reveal in Finder"_s);
        QCOMPARE(spoken(second, QAccessible::Description), u"Gone 2.aiff"_s);
        QVERIFY(press(second));
        QCOMPARE(bench.files->revealed, QStringList{u"/music/Gone 2.aiff"_s});
        second->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.files->revealed.size(), 2);
    }

    void keepingTakesTheStripAway() {
        WindowBench bench;
        find(bench, 1);
        bench.click(bench.item("orphansKeep"));
        QVERIFY(bench.model.orphans()->dismissed());
        QTRY_VERIFY(!bench.item("orphansBanner"));
        bench.model.orphans()->accumulate({u"/music/Another.aiff"_s});
        settleDown();
        QVERIFY(!bench.item("orphansBanner"));
    }

    void theTrashTakesTheStripAwayWithoutAsking() {
        WindowBench bench;
        find(bench, 12);
        QVERIFY(press(bench.item("orphansTrash")));
        QTRY_VERIFY(bench.model.orphans()->paths().isEmpty());
        QTRY_VERIFY(!bench.item("orphansBanner"));
    }

    void theTabKeyGoesThroughItsButtons() {
        WindowBench bench;
        find(bench, 1);
        bench.item("orphansToggle")->forceActiveFocus(Qt::TabFocusReason);
        for (const char *next : {"orphansKeep", "orphansTrash"}) {
            bench.key(Qt::Key_Tab);
            QVERIFY2(bench.item(next)->hasActiveFocus(), next);
        }
    }
};

QTEST_MAIN(WindowOrphansTest)
#include "tst_window_orphans.moc"

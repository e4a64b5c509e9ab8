#include "State/Records.h"
#include "WindowBench.h"

#include "Views/ListWindow.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;
using Ids = QSet<QString>;

namespace {

QQuickItem *sidebarRow(const WindowBench &bench, const QString &name) {
    for (QQuickItem *row : bench.items("playlistRow") + bench.items("folderRow")) {
        if (bench.texts(row).contains(name))
            return row;
    }
    return nullptr;
}

bool doAction(QQuickItem *item, const QString &action) {
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    if (!interface || !interface->actionInterface()->actionNames().contains(action))
        return false;
    interface->actionInterface()->doAction(action);
    return true;
}

void beginRun(WindowBench &bench, int playlists, int rows) {
    bench.route(Event::SyncStarted{u"run"_s, u"run"_s, playlists});
    for (int list = 0; list < playlists; ++list) {
        std::vector<TrackDTO> tracks;
        for (int i = 0; i < rows; ++i)
            tracks.push_back({u"t%1-%2"_s.arg(list).arg(i), u"Track %1-%2"_s.arg(list).arg(i), u"A"_s, {}, 200, {}});
        bench.route(Event::PlaylistStarted{u"run"_s, u"list%1"_s.arg(list), list, u"List %1"_s.arg(list), tracks});
    }
}

QQuickItem *trackRow(const WindowBench &bench, const QString &title) {
    for (QQuickItem *row : bench.items("trackRow")) {
        if (bench.texts(row).contains(title))
            return row;
    }
    return nullptr;
}

QQuickItem *table(const WindowBench &bench) {
    return bench.item("trackTable");
}

} // namespace

class WindowListsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { settleDown(); }
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void playlistsAreSelectedByMouse() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(sidebarRow(bench, u"Requests"_s));
        bench.click(sidebarRow(bench, u"Peak Time 132"_s));
        QCOMPARE(bench.model.library()->selection(), Ids{u"peak"_s});
        bench.click(sidebarRow(bench, u"Broken Beat Sketches"_s), Qt::ControlModifier);
        QCOMPARE(bench.model.library()->selection(), (Ids{u"peak"_s, u"broken"_s}));
        bench.click(sidebarRow(bench, u"Requests"_s), Qt::ShiftModifier);
        QCOMPARE(bench.model.library()->selection(), (Ids{u"peak"_s, u"broken"_s, u"requests"_s}));
        bench.click(sidebarRow(bench, u"Requests"_s));
        QCOMPARE(bench.model.library()->selection(), Ids{u"requests"_s});
    }

    void theChevronOpensWithoutSelecting() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(bench.item("folderChevron"));
        bench.click(bench.item("folderChevron"));
        QTRY_VERIFY(sidebarRow(bench, u"Terrace Sunset"_s));
        QVERIFY(bench.model.library()->selection().isEmpty());
        bench.click(bench.item("folderChevron"));
        QTRY_VERIFY(!sidebarRow(bench, u"Terrace Sunset"_s));
    }

    void aFolderIsSelectedByMouse() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(sidebarRow(bench, u"Gigs 2025"_s));
        bench.click(sidebarRow(bench, u"Gigs 2025"_s));
        QCOMPARE(bench.model.library()->selection(), (Ids{u"terrace"_s, u"lasthour"_s}));
        QTRY_VERIFY(sidebarRow(bench, u"Terrace Sunset"_s));
    }

    void playlistsAreSelectedByPress() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(sidebarRow(bench, u"Requests"_s));
        QQuickItem *peak = sidebarRow(bench, u"Peak Time 132"_s);
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(peak);
        QCOMPARE(interface->text(QAccessible::Name), u"Peak Time 132, Spotify, 64 tracks"_s);
        QCOMPARE(interface->role(), QAccessible::ListItem);
        QVERIFY(doAction(peak, QAccessibleActionInterface::pressAction()));
        QCOMPARE(bench.model.library()->selection(), Ids{u"peak"_s});
        QVERIFY(interface->state().selected);
        QVERIFY(doAction(sidebarRow(bench, u"Requests"_s), QAccessibleActionInterface::toggleAction()));
        QCOMPARE(bench.model.library()->selection(), (Ids{u"peak"_s, u"requests"_s}));
    }

    void playlistsAreSelectedByKeyboard() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(sidebarRow(bench, u"Requests"_s));
        bench.item("playlistList")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Down); // from Gigs 2025 to Crates, which is empty
        QCOMPARE(bench.model.library()->selection(), Ids());
        bench.key(Qt::Key_Down);
        QCOMPARE(bench.model.library()->selection(), Ids{u"broken"_s});
        bench.key(Qt::Key_Down, Qt::ShiftModifier); // over the section's head
        QCOMPARE(bench.model.library()->selection(), (Ids{u"broken"_s, u"peak"_s}));
        bench.key(Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(bench.model.library()->selection(), (Ids{u"broken"_s, u"peak"_s}));
        bench.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(bench.model.library()->selection(), (Ids{u"broken"_s, u"peak"_s, u"requests"_s}));
        bench.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(bench.model.library()->selection(), (Ids{u"broken"_s, u"peak"_s}));
        bench.key(Qt::Key_Space);
        QCOMPARE(bench.model.library()->selection(), Ids{u"requests"_s});
        bench.key(Qt::Key_Home, Qt::ControlModifier);
        bench.key(Qt::Key_Right);
        QTRY_VERIFY(sidebarRow(bench, u"Terrace Sunset"_s));
        bench.key(Qt::Key_Left);
        QTRY_VERIFY(!sidebarRow(bench, u"Terrace Sunset"_s));
        bench.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(bench.model.library()->selection(),
                 (Ids{u"broken"_s, u"peak"_s, u"requests"_s, u"terrace"_s, u"lasthour"_s}));
    }

    void typingFilters() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(sidebarRow(bench, u"Requests"_s));
        bench.item("filterField")->forceActiveFocus(Qt::TabFocusReason);
        for (const char letter : {'p', 'e', 'a', 'k'})
            QTest::keyClick(bench.window.window(), letter);
        QTRY_VERIFY(!sidebarRow(bench, u"Requests"_s));
        QTRY_VERIFY(sidebarRow(bench, u"Peak Time 132"_s));
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(sidebarRow(bench, u"Requests"_s));
    }

    void everythingIsReachedByTab() {
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        beginRun(bench, 1, 3);
        QTRY_VERIFY(trackRow(bench, u"Track 0-2"_s));
        QStringList reached;
        for (int i = 0; i < 12; ++i) {
            bench.key(Qt::Key_Tab);
            for (QQuickItem *item = bench.window.window()->activeFocusItem(); item; item = item->parentItem()) {
                if (!item->objectName().isEmpty()) {
                    reached += item->objectName();
                    break;
                }
            }
        }
        for (const QString &name : {u"filterField"_s, u"playlistList"_s, u"toolbarCancel"_s, u"trackTable"_s})
            QVERIFY2(reached.contains(name), qPrintable(reached.join(u' ')));
    }

    void rowsAreUsedByKeyboard() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 2, 2);
        TrackModel *second = bench.model.sync()->groups()->at(0)->track(1);
        second->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("reviewButton"));
        table(bench)->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Space);
        QTRY_VERIFY(!trackRow(bench, u"Track 0-0"_s));
        bench.key(Qt::Key_Right);
        QTRY_VERIFY(trackRow(bench, u"Track 0-0"_s));
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Down);
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.model.focusedReviewTrackId(), u"t0-1"_s);
        bench.key(Qt::Key_Menu);
        QTRY_VERIFY(bench.item("menuSkip"));
    }

    void theRowsMenuKnowsItsRow() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 1, 2);
        QTRY_VERIFY(trackRow(bench, u"Track 0-1"_s));
        bench.click(trackRow(bench, u"Track 0-1"_s), {}, Qt::RightButton);
        QTRY_VERIFY(bench.item("menuCopyTitle"));
        QVERIFY(bench.item("menuRetry"));
        QVERIFY(bench.item("menuSkip"));
        QVERIFY(!bench.item("menuReview"));
        bench.click(bench.item("menuCopyTitle"));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), u"Track 0-1"_s);
        QTRY_VERIFY(!bench.item("menuCopyTitle"));
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        bench.click(trackRow(bench, u"Track 0-0"_s), {}, Qt::RightButton);
        QTRY_VERIFY(bench.item("menuReview"));
        QTRY_VERIFY(bench.item("menuSkip")->y() > bench.item("menuReview")->y());
        bench.click(bench.item("menuReview"));
        QCOMPARE(bench.model.focusedReviewTrackId(), u"t0-0"_s);
    }

    void theRowsMenuStaysItsTracksWhenTheRunStartsAnew() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 1, 2);
        QTRY_VERIFY(trackRow(bench, u"Track 0-1"_s));
        bench.click(trackRow(bench, u"Track 0-1"_s), {}, Qt::RightButton);
        QTRY_VERIFY(bench.item("menuSkip"));
        // The same track comes back as another row.
        bench.route(Event::SyncStarted{u"run"_s, u"run"_s, 1});
        Event::PlaylistStarted begun{u"run"_s, u"terrace"_s, 0, u"Terrace"_s, {}};
        for (const auto &id : {u"t0-1"_s, u"t0-0"_s})
            begun.tracks.push_back(trackOf(id));
        bench.route(begun);
        QVERIFY(!bench.item("menuReview"));
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("menuReview"));
        bench.click(bench.item("menuSkip"));
        QTRY_VERIFY(!bench.sent().empty());
        QCOMPARE(bench.sent().back(), Request::reviewDecision(u"run"_s, u"t0-1"_s, ReviewDecision::skip()));
    }

    void retryStartsASync() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 1, 1);
        bench.route(Event::TrackFinished{u"run"_s, u"t0-0"_s, Finish::failed, u"No match found"_s, {}, {}});
        bench.route(Event::SyncDone{u"run"_s, u"run"_s, SyncSummary{}});
        QTRY_VERIFY(bench.item("retryButton"));
        bench.click(bench.item("retryButton"));
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::preparing);
    }

    void theBarDragsToWhatItsPlaceSays() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 50, 400);
        QTRY_VERIFY(trackRow(bench, u"Track 0-0"_s));
        QQuickItem *bar = nullptr;
        for (QQuickItem *each : bench.items("scrollBar")) {
            if (each->parentItem() == table(bench))
                bar = each;
        }
        QVERIFY(bar);
        QQuickWindow *window = bench.window.window();
        const auto at = [bar](double y) { return bar->mapToScene(QPointF(bar->width() / 2, y)).toPoint(); };
        QTest::mousePress(window, Qt::LeftButton, {}, at(10));
        QTest::mouseMove(window, at(bar->height() / 4));
        QTest::mouseMove(window, at(bar->height() / 2));
        QTest::mouseRelease(window, Qt::LeftButton, {}, at(bar->height() / 2));
        const double contentY = table(bench)->property("contentY").toDouble();
        const double height = table(bench)->property("contentHeight").toDouble();
        QVERIFY2(std::abs(contentY / height - 0.5) < 0.1, qPrintable(QString::number(contentY / height)));
        isTrue(bench);
        bench.model.sync()->groups()->at(10)->setCollapsed(true);
        isTrue(bench);
        for (int i = 0; i < 50; ++i)
            bench.model.sync()->groups()->at(i)->setCollapsed(true);
        QTRY_VERIFY(table(bench)->property("contentY").toDouble() <=
                    table(bench)->property("contentHeight").toDouble() - table(bench)->height());
        isTrue(bench);
        // No more delegates than are in view, and a few.
        QVERIFY(bench.content()->findChildren<QQuickItem *>(u"trackRow"_s).size() < 60);
    }

    void theRowUnderReviewComesIntoView() {
        WindowBench bench;
        bench.loadLibrary();
        beginRun(bench, 3, 60);
        bench.model.sync()->groups()->at(2)->track(40)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        QVERIFY(!trackRow(bench, u"Track 2-40"_s));
        bench.click(bench.item("toolbarReview"));
        QTRY_VERIFY(trackRow(bench, u"Track 2-40"_s));
    }

private:
    // Every row in view stands where the model says, and is the row of that place.
    static void isTrue(const WindowBench &bench) {
        auto *column = table(bench)->findChild<ListWindow *>();
        QVERIFY(column);
        column->ensurePolished();
        QTRY_VERIFY(column->isFilled());
        int seen = 0;
        for (int i = column->model()->indexAt(column->viewTop());
             i <= column->model()->indexAt(column->viewTop() + column->viewHeight()); ++i) {
            QQuickItem *item = column->itemAt(i);
            if (column->model()->kindOf(i) < 0)
                continue;
            QVERIFY(item);
            QCOMPARE(item->y(), column->model()->yOf(i));
            if (item->objectName() == u"trackRow"_s)
                QCOMPARE(bench.texts(item).value(0), column->model()->index(i).data().toString());
            ++seen;
        }
        QVERIFY(seen > 3);
    }
};

QTEST_MAIN(WindowListsTest)
#include "tst_window_lists.moc"

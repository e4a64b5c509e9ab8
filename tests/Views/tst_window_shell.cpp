// The window's frame as it is written down: menu entries, toolbar, message and strip, each as it reads and when.
#include "Accessible.h"
#include "Support/ScriptedClient.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

/// The run's rows don't come into it here: the state that a phase leaves behind.
void bringTo(WindowBench &bench, SyncPhase phase) {
    SyncStore *sync = bench.model.sync();
    if (phase == SyncPhase::idle)
        return;
    sync->markPreparing();
    if (phase == SyncPhase::preparing)
        return;
    bench.beginRun(2, 2);
    if (phase == SyncPhase::done)
        bench.route(ServerEvent::SyncDone{u"run"_s, u"run"_s, {}});
    else if (phase == SyncPhase::cancelled)
        sync->markCancelled();
    else if (phase == SyncPhase::interrupted)
        sync->route(HelperEvent::helperCrashed());
}

void phaseRows(bool withIdle = true) {
    QTest::addColumn<SyncPhase>("phase");
    QTest::addColumn<bool>("running");
    if (withIdle)
        QTest::newRow("idle") << SyncPhase::idle << false;
    QTest::newRow("preparing") << SyncPhase::preparing << true;
    QTest::newRow("running") << SyncPhase::running << true;
    QTest::newRow("done") << SyncPhase::done << false;
    QTest::newRow("cancelled") << SyncPhase::cancelled << false;
    QTest::newRow("interrupted") << SyncPhase::interrupted << false;
}

/// The names of the symbols that are shown under an item.
QStringList symbolsIn(QQuickItem *root) {
    QStringList names;
    const auto shown = WindowBench::itemsOf(root, [](QQuickItem *each) { return each->inherits("QQuickImage"); });
    for (QQuickItem *each : shown)
        names += each->property("name").toString();
    return names;
}

} // namespace

class WindowShellTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void everyEntryHasItsTitleAndItsKeys_data() {
        QTest::addColumn<Qt::Key>("menu");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("keys");
        QTest::newRow("sync") << Qt::Key_F << u"menuSync"_s << u"Sync"_s << u"Ctrl+R"_s;
        QTest::newRow("cancel") << Qt::Key_F << u"menuCancelSync"_s << u"Cancel Sync"_s << u"Ctrl+."_s;
        QTest::newRow("refresh") << Qt::Key_F << u"menuRefreshLibrary"_s << u"Refresh Library"_s << u"Ctrl+Shift+R"_s;
        QTest::newRow("reveal") << Qt::Key_F << u"menuRevealOutput"_s << u"Reveal Output Folder"_s << QString();
        QTest::newRow("review") << Qt::Key_F << u"menuReviewMatches"_s << u"Review Matches"_s << u"Ctrl+Alt+R"_s;
        QTest::newRow("settings") << Qt::Key_F << u"menuSettings"_s << u"Settings…"_s << u"Ctrl+,"_s;
        QTest::newRow("quit") << Qt::Key_F << u"menuQuit"_s << u"Quit"_s << u"Ctrl+Q"_s;
        QTest::newRow("help") << Qt::Key_H << u"menuHelp"_s << u"zelk Help"_s << QString();
        QTest::newRow("updates") << Qt::Key_H << u"menuCheckForUpdates"_s << u"Check for Updates…"_s << QString();
        QTest::newRow("about") << Qt::Key_H << u"menuAbout"_s << u"About zelk"_s << QString();
    }
    void everyEntryHasItsTitleAndItsKeys() {
        QFETCH(Qt::Key, menu);
        QFETCH(QString, entry);
        WindowBench bench;
        bench.key(menu, Qt::AltModifier);
        QTRY_VERIFY(bench.item(qPrintable(entry)));
        QQuickItem *item = bench.item(qPrintable(entry));
        QTEST(spoken(item), "title");
        QTEST(item->property("keys").toString(), "keys");
        auto *const action = item->property("action").value<QObject *>();
        QTEST(action->property("shortcut").value<QVariant>().toString(), "keys");
    }

    void theMenuFollowsThePhase_data() { phaseRows(); }
    void theMenuFollowsThePhase() {
        QFETCH(SyncPhase, phase);
        QFETCH(bool, running);
        WindowBench bench;
        bringTo(bench, phase);
        QCOMPARE(bench.model.sync()->phase(), phase);
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuSync"));
        QCOMPARE(bench.item("menuSync")->isEnabled(), !running);
        QCOMPARE(bench.item("menuCancelSync")->isEnabled(), running);
        QVERIFY(bench.item("menuRefreshLibrary")->isEnabled());
        QVERIFY(bench.item("menuRevealOutput")->isEnabled());
        QVERIFY(!bench.item("menuReviewMatches")->isEnabled());
    }

    void aReviewCanBeOpenedWhateverThePhase_data() { phaseRows(false); } // which has no rows
    void aReviewCanBeOpenedWhateverThePhase() {
        QFETCH(SyncPhase, phase);
        WindowBench bench;
        bench.beginRun(2, 2);
        if (phase != SyncPhase::preparing)
            bringTo(bench, phase);
        TrackModel *track = bench.model.sync()->groups()->at(1)->track(1); // in any group
        track->setState(TrackState::awaitingReview({}));
        if (phase == SyncPhase::preparing)
            bench.model.sync()->markPreparing();
        QCOMPARE(bench.model.sync()->phase(), phase);
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuReviewMatches"));
        QTRY_VERIFY(bench.item("menuReviewMatches")->isEnabled());
        QTRY_COMPARE(spoken(bench.item("toolbarReview")), u"1 review"_s);
        track->setState(TrackState::done(Finish::ok));
        QTRY_VERIFY(!bench.item("menuReviewMatches")->isEnabled());
    }

    void theRunButtonFollowsThePhase_data() { phaseRows(); }
    void theRunButtonFollowsThePhase() {
        QFETCH(SyncPhase, phase);
        QFETCH(bool, running);
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        bringTo(bench, phase);
        QQuickItem *button = bench.item(running ? "toolbarCancel" : "toolbarSync");
        QVERIFY(button && button->isEnabled());
        QVERIFY(!bench.item(running ? "toolbarSync" : "toolbarCancel"));
        QCOMPARE(spoken(button), running ? u"Cancel Sync"_s : u"Sync"_s);
        QCOMPARE(spoken(button, QAccessible::Description),
                 running ? u"Cancel the running sync (⌘.)"_s : u"Sync the selected playlists (⌘R)"_s);
        QCOMPARE(button->property("symbol").toString(), running ? u"stop.fill"_s : u"arrow.triangle.2.circlepath"_s);
    }

    void theReviewButtonSaysWhatItIsFor() {
        WindowBench bench;
        bench.beginRun(1, 1);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        QCOMPARE(spoken(bench.item("toolbarReview"), QAccessible::Description), u"Review low-confidence matches"_s);
        QCOMPARE(bench.item("toolbarReview")->property("symbol").toString(), u"exclamationmark.triangle.fill"_s);
    }

    void withoutALibraryTheSidebarWaitsUnderTheName() {
        QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s));
        const auto around = surroundings();
        AppModel model(
            [] {
                return AppModel::Engine{.client = std::make_shared<ScriptedClient>(),
                                        .start = []() -> QCoro::Task<> { co_return; }};
            },
            around);
        const MainWindow window(
            model, {.clock = around.clock,
                    .files = std::make_shared<SeenFiles>(),
                    .folders = std::make_shared<ScriptedFolders>(),
                    .appearance = std::make_shared<Appearance>(std::make_shared<GivenDesktop>(), around.defaults),
                    .defaults = around.defaults,
                    .openUrl = {},
                    .checkForUpdates = {}});
        QVERIFY(!model.library()); // it comes on a turn of the loop
        const auto shown = [&window](const char *type) {
            return WindowBench::itemsOf(window.window()->contentItem(), [type](QQuickItem *each) {
                return QByteArray(each->metaObject()->className()).startsWith(type) && each->width() > 0;
            });
        };
        QVERIFY(!shown("Spinner").isEmpty());
        bool named = false;
        for (QQuickItem *text : shown("TextLine"))
            named = named || text->property("text").toString() == u"zelk"_s;
        QVERIFY(named);
        QTRY_VERIFY(model.library());
    }

    void theMessageKeepsWithinItsMeasures() {
        WindowBench bench;
        const auto stand = [&bench](const QString &message) {
            bench.model.sync()->setBanner(SyncBanner::info(message));
            QTRY_VERIFY(bench.item("banner") && bench.item("banner")->opacity() == 1);
            bench.drawFrame();
        };
        stand(u"Short"_s);
        QQuickItem *banner = bench.item("banner");
        QQuickItem *toolbar = bench.item("toolbarSync")->parentItem()->parentItem();
        QCOMPARE(banner->width(), 560.0);
        QTRY_COMPARE(banner->y(), toolbar->height() + 8);
        const double oneLine = banner->height();
        stand(u"One that says very much, "_s.repeated(12));
        QVERIFY(banner->height() > oneLine); // it wraps
        QCOMPARE(banner->width(), 560.0);
        // In a pane narrower than that it leaves 16 at both sides.
        bench.window.window()->resize(880, 600);
        bench.beginRun(1, 1);
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        QTRY_VERIFY(banner->width() < 560);
        QTRY_COMPARE(banner->width(), banner->parentItem()->width() - 32);
        QCOMPARE(banner->x(), 16.0);
    }

    void theMessageHasNoTimeOut() {
        WindowBench bench;
        bench.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QTRY_VERIFY(bench.item("banner"));
        QCOMPARE(bench.clock->pendingAlarms(), 0);
        bench.clock->advance(std::chrono::hours(24));
        settleDown();
        QVERIFY(bench.item("banner"));
        QVERIFY(bench.model.sync()->banner());
    }

    void theSidebarIsNeverNarrowerThanItMayBe() {
        WindowBench bench;
        bench.drawFrame();
        QQuickItem *edge = bench.item("sidebarEdge");
        const QPoint at = edge->mapToScene(QPointF(edge->width() / 2, 300)).toPoint();
        QTest::mousePress(bench.window.window(), Qt::LeftButton, {}, at);
        QTest::mouseMove(bench.window.window(), at - QPoint(250, 0));
        QTest::mouseRelease(bench.window.window(), Qt::LeftButton, {}, at - QPoint(250, 0));
        QTRY_COMPARE(bench.item("sidebarEdge")->x() + edge->width() / 2, 240.0);
    }

    void theStripIsOneContainerWithItsWords() {
        WindowBench bench;
        bench.model.orphans()->accumulate({u"/music/A.aiff"_s});
        QTRY_VERIFY(bench.item("orphansBanner"));
        QQuickItem *strip = bench.item("orphansBanner");
        QCOMPARE(QAccessible::queryAccessibleInterface(strip)->role(), QAccessible::Grouping);
        QCOMPARE(spoken(bench.item("orphansKeep")), u"Keep"_s);
        QCOMPARE(spoken(bench.item("orphansTrash")), u"Move to Trash"_s);
        QCOMPARE(symbolsIn(strip), QStringList{u"trash.slash"_s});
        bench.click(bench.item("orphansToggle"));
        QTRY_COMPARE(symbolsIn(strip), (QStringList{u"trash.slash"_s, u"doc"_s, u"magnifyingglass"_s}));
    }
};

QTEST_MAIN(WindowShellTest)
#include "tst_window_shell.moc"

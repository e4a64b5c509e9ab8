#include "Accessible.h"
#include "WindowBench.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;
using Ids = QSet<QString>;

namespace {

std::vector<TrackDTO> tracks(int count) {
    std::vector<TrackDTO> result;
    for (int i = 0; i < count; ++i)
        result.push_back({u"t%1"_s.arg(i), u"Track %1"_s.arg(i), u"Artist"_s, u"Album"_s, 200, {}});
    return result;
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { settleDown(); }
    void initTestCase() { QAccessible::setActive(true); }

    // A view that warns is a view that is broken somewhere.
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theWindowHasItsSizes() {
        WindowBench bench;
        QQuickWindow *window = bench.window.window();
        QVERIFY(window);
        QCOMPARE(window->title(), u"zelk"_s);
        QCOMPARE(window->size(), QSize(1040, 720));
        QCOMPARE(window->minimumSize(), QSize(880, 600));
    }

    void theWindowComesBackAsItWasLeft() {
        const auto defaults = onboardedDefaults();
        const auto drag = [](WindowBench &bench, const char *edge, int by) {
            bench.drawFrame();
            QQuickItem *item = bench.item(edge);
            const QPoint at = item->mapToScene(QPointF(item->width() / 2, 300)).toPoint();
            QTest::mousePress(bench.window.window(), Qt::LeftButton, {}, at);
            QTest::mouseMove(bench.window.window(), at + QPoint(by, 0));
            QTest::mouseRelease(bench.window.window(), Qt::LeftButton, {}, at + QPoint(by, 0));
        };
        {
            WindowBench bench(std::make_shared<MockHelperClient>(), defaults);
            drag(bench, "sidebarEdge", 30);
            QCOMPARE(defaults->value(u"sidebarWidth"_s).toInt(), 310);
            drag(bench, "sidebarEdge", 500);
            QCOMPARE(defaults->value(u"sidebarWidth"_s).toInt(), 360); // the most that it may have
            bench.window.window()->resize(790, 700);
        }
        const WindowBench again(std::make_shared<MockHelperClient>(), defaults);
        QCOMPARE(again.window.window()->size(), QSize(880, 700)); // the least that it may have
        QCOMPARE(again.item("sidebarEdge")->x(), 360 - again.item("sidebarEdge")->width() / 2);
    }

    void nonsenseInTheDefaultsIsNoSize() {
        const auto defaults = onboardedDefaults();
        defaults->set(u"windowSize"_s, u"huge"_s);
        defaults->set(u"sidebarWidth"_s, u"wide"_s);
        defaults->set(u"inspectorWidth"_s, -5);
        const WindowBench bench(std::make_shared<MockHelperClient>(), defaults);
        QCOMPARE(bench.window.window()->size(), QSize(1040, 720));
        QCOMPARE(bench.item("sidebarEdge")->x(), 280 - bench.item("sidebarEdge")->width() / 2);
    }

    void theUnavailableEngineIsSaidEvenOverARun() {
        QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s));
        auto around = surroundings();
        around.defaults = onboardedDefaults();
        AppModel model([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, around);
        MainWindow window(
            model, {.clock = around.clock,
                    .files = std::make_shared<SeenFiles>(),
                    .folders = std::make_shared<ScriptedFolders>(),
                    .appearance = std::make_shared<Appearance>(std::make_shared<GivenDesktop>(), around.defaults),
                    .defaults = around.defaults,
                    .openUrl = {},
                    .checkForUpdates = {}});
        QTRY_VERIFY(model.startupError());
        model.sync()->route(HelperEvent::server(Event::SyncStarted{u"r"_s, u"r"_s, 1}));
        model.sync()->route(HelperEvent::server(Event::PlaylistStarted{u"r"_s, u"p"_s, 0, u"P"_s, tracks(1)}));
        QStringList texts;
        for (QQuickItem *item : WindowBench::itemsOf(window.window()->contentItem(),
                                                     [](QQuickItem *each) { return each->inherits("QQuickText"); }))
            texts += item->property("text").toString();
        QVERIFY(texts.contains(u"Helper Unavailable"_s));
        QVERIFY(texts.contains(*model.startupError()));
        QVERIFY(!texts.contains(u"P"_s));
    }

    void thePaneFollowsSelectionAndRun() {
        WindowBench bench;
        bench.loadLibrary();
        QTRY_VERIFY(bench.shows(u"Select a Playlist"_s));
        // Folders alone are no selection.
        bench.model.library()->setSelection({u"crates"_s});
        QVERIFY(bench.shows(u"Select a Playlist"_s));
        bench.model.library()->setSelection({u"peak"_s});
        QVERIFY(!bench.shows(u"Select a Playlist"_s));
        QVERIFY(bench.item("previewSummaryBar"));
        bench.model.selectionChanged();
        QTRY_COMPARE(bench.clock->pendingAlarms(), 1);
        bench.clock->advance(std::chrono::seconds(2));
        QTRY_VERIFY(bench.shows(u"Sodium Lamps"_s));
        QTRY_VERIFY(bench.shows(u"1 playlist · 3 tracks"_s));
        QVERIFY(bench.shows(u"2 on disk · 1 not downloaded"_s));
        bench.beginRun(1, 2);
        QTRY_VERIFY(bench.shows(u"Track 1"_s));
        QVERIFY(bench.item("overallSummaryBar"));
        QTRY_VERIFY(bench.shows(u"0 / 2 done"_s));
        QVERIFY(bench.shows(u"Syncing"_s));
        bench.model.sync()->markPreparing();
        QTRY_VERIFY(bench.shows(u"Preparing…"_s));
        QVERIFY(bench.shows(u"Track 1"_s));
    }

    void everyStateOfARowReadsAsItIs() {
        WindowBench bench;
        bench.beginRun(1, 9);
        PlaylistGroup *group = bench.model.sync()->groups()->at(0);
        group->track(0)->setState(TrackState::checkingDisk());
        group->track(1)->setState(TrackState::working(Phase::tagging, u"cover"_s));
        group->track(2)->setState(TrackState::working(Phase::downloading));
        group->track(2)->setDownloadFraction(0.41);
        group->track(3)->setState(TrackState::awaitingReview({}));
        group->track(4)->setState(TrackState::present(TrackMeta{u"flac"_s, {}, u"youtube"_s}));
        group->track(5)->setState(TrackState::done(Finish::lowConfidence));
        group->track(6)->setState(TrackState::failed(u"No match found"_s));
        group->track(7)->setState(TrackState::done(Finish::skipped));
        for (const QString &text : {u"Checking disk"_s, u"cover"_s, u"41%"_s, u"Review"_s, u"On disk"_s, u"FLAC"_s,
                                    u"YouTube"_s, u"Low confidence"_s, u"No match found"_s, u"Skipped"_s, u"Queued"_s})
            QTRY_VERIFY2(bench.shows(text), qPrintable(text));
        QCOMPARE(bench.items("reviewButton").size(), 1);
        QCOMPARE(bench.items("retryButton").size(), 1);
        QCOMPARE(spoken(bench.item("reviewButton")), u"Needs review"_s);
        QCOMPARE(spoken(bench.item("trackRow")), u"Track 0"_s);
    }

    void theToolbarFollowsPhaseAndSelection() {
        WindowBench bench;
        bench.loadLibrary();
        QVERIFY(!bench.item("toolbarSync")->isEnabled());
        bench.model.library()->setSelection({u"crates"_s, u"gone"_s});
        QVERIFY(!bench.item("toolbarSync")->isEnabled());
        bench.model.library()->setSelection({u"peak"_s});
        QVERIFY(bench.item("toolbarSync")->isEnabled());
        QVERIFY(!bench.item("toolbarCancel"));
        QVERIFY(!bench.item("toolbarReview"));
        bench.beginRun(1, 2);
        QVERIFY(!bench.item("toolbarSync"));
        QVERIFY(bench.item("toolbarCancel")->isEnabled());
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        QCOMPARE(spoken(bench.item("toolbarReview")), u"1 review"_s);
        bench.model.sync()->groups()->at(0)->track(1)->setState(TrackState::awaitingReview({}));
        QTRY_COMPARE(spoken(bench.item("toolbarReview")), u"2 reviews"_s);
        bench.click(bench.item("toolbarReview"));
        QCOMPARE(bench.model.focusedReviewTrackId(), u"t0"_s);
        bench.click(bench.item("toolbarCancel"));
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::cancelled);
        QVERIFY(bench.item("toolbarSync"));
    }

    void syncStaysOneKeyAwayWithoutASelection() {
        WindowBench bench;
        bench.loadLibrary();
        bench.key(Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::preparing);
        QTRY_VERIFY(bench.shows(u"Select one or more playlists first."_s));
        // Now it is running, and only cancelling is offered.
        bench.key(Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::cancelled);
        bench.key(Qt::Key_Period, Qt::ControlModifier);
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::cancelled);
    }

    void refreshHasItsKeys() {
        WindowBench bench;
        bench.loadLibrary();
        QSignalSpy loads(bench.model.library(), &LibraryStore::loadStateChanged);
        bench.key(Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_COMPARE(loads.count(), 2);
    }

    void reviewHasItsKeysOnlyWhileSomethingWaits() {
        WindowBench bench;
        bench.beginRun(1, 1);
        bench.key(Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(!bench.model.focusedReviewTrackId());
        bench.model.sync()->groups()->at(0)->track(0)->setState(TrackState::awaitingReview({}));
        QTRY_VERIFY(bench.item("toolbarReview"));
        bench.key(Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(bench.model.focusedReviewTrackId(), u"t0"_s);
    }

    void theBannerStaysUntilDismissedAndCoversNothing() {
        WindowBench bench;
        bench.loadLibrary();
        bench.beginRun(1, 2);
        QTRY_VERIFY(bench.item("groupHeader"));
        QVERIFY(!bench.item("banner"));
        bench.model.sync()->setBanner(SyncBanner::warning(u"Something is off"_s));
        QTRY_VERIFY(bench.item("banner") && bench.item("banner")->opacity() == 1);
        const auto bottom = [&] {
            QQuickItem *banner = bench.item("banner");
            return banner->mapToScene(QPointF(0, banner->height())).y();
        };
        QTRY_VERIFY(bench.item("groupHeader")->mapToScene(QPointF()).y() > bottom());
        bench.click(bench.item("dismissBanner"));
        QVERIFY(!bench.model.sync()->banner());
        QTRY_VERIFY(!bench.item("banner"));
    }

    void theBannerCanBeDismissedByPress() {
        WindowBench bench;
        bench.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QTRY_VERIFY(bench.item("dismissBanner"));
        QCOMPARE(spoken(bench.item("dismissBanner")), u"Dismiss"_s);
        QVERIFY(press(bench.item("dismissBanner")));
        QVERIFY(!bench.model.sync()->banner());
    }

    void anExpiredSignInCanBeMended() {
        WindowBench bench;
        bench.model.sync()->setBanner(SyncBanner::warning(u"Something is off"_s));
        QTRY_VERIFY(bench.item("dismissBanner"));
        QVERIFY(!bench.item("reconnectBanner"));
        bench.model.sync()->setBanner(SyncBanner::error(u"Sign in again"_s, u"spotify_auth_expired"_s));
        QVERIFY(bench.item("reconnectBanner"));
        QCOMPARE(spoken(bench.item("reconnectBanner")), u"Reconnect"_s);
        bench.click(bench.item("reconnectBanner"));
        QTRY_VERIFY(bench.model.isOnboardingPresented());
        QVERIFY(bench.item("banner"));
    }

    void aPressDoesWhatAClickDoesOnce() {
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        QSignalSpy phases(bench.model.sync(), &SyncStore::phaseChanged);
        QVERIFY(press(bench.item("toolbarSync")));
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::preparing);
        QCOMPARE(phases.count(), 1);
        QTRY_VERIFY(bench.item("toolbarCancel"));
        QVERIFY(press(bench.item("toolbarCancel")));
        QCOMPARE(phases.count(), 2);
    }

    void closingEndsTheApplication() {
        WindowBench bench;
        QTimer::singleShot(0, &bench.model, [&bench] { bench.key(Qt::Key_W, Qt::ControlModifier); });
        QTimer::singleShot(std::chrono::seconds(20), &bench.model, [] { QCoreApplication::exit(1); });
        QCOMPARE(QGuiApplication::exec(), 0);
        QVERIFY(!bench.window.window()->isVisible());
    }

    void theMenuOffersWhatCanBeDone() {
        WindowBench bench;
        bench.loadLibrary();
        bench.key(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(bench.item("menuSync"));
        QVERIFY(bench.item("menuSync")->isEnabled());
        QVERIFY(!bench.item("menuCancelSync")->isEnabled());
        QVERIFY(!bench.item("menuReviewMatches")->isEnabled());
        QVERIFY(bench.item("menuRefreshLibrary")->isEnabled());
        QVERIFY(press(bench.item("menuSync")));
        QCOMPARE(bench.model.sync()->phase(), SyncPhase::preparing);
    }

    void theSameWordsStandInDarkAndInLight() {
        WindowBench bench;
        bench.loadLibrary();
        bench.model.library()->setSelection({u"peak"_s});
        const QStringList light = bench.texts();
        bench.window.tokens().color()->setDark(!bench.window.tokens().color()->dark());
        QCOMPARE(bench.texts(), light);
        QCOMPARE(bench.window.window()->color(), bench.window.tokens().color()->window);
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"

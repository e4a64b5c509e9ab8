#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "State/Records.h"
#include "Support/Await.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Id = std::optional<QString>;

const QByteArray tracks = R"({"tracks":[{"id":"a#0","title":"T","artist":"A","durationSec":9,)"
                          R"("artwork":{"kind":"none"},"onDisk":"missing"}]})";

} // namespace

class TestAppModelCommands : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::shared_ptr<ManualClock> clock;
    std::unique_ptr<AppModel> model;

    void load(const std::vector<PlaylistDTO> &playlists) {
        client->reply(Method::listPlaylists, "{\"playlists\":" + writeJSON(playlists) + "}");
        QVERIFY(outcomeOf(model->library()->refresh()).succeeded());
    }
    void run(std::vector<HelperEvent> events) {
        client->emitAll(std::move(events));
        settle();
    }
    /// A run with the rows p#0 to p#3, of which the first `waiting` await review.
    void review(int waiting) {
        run({syncStarted(u"run-1"_s), playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s, u"p#2"_s, u"p#3"_s})});
        for (int i = 0; i < waiting; ++i)
            run({needsReview(u"p#%1"_s.arg(i))});
    }
    /// A reply that fails is asked for in the other shape too.
    void failTracks() {
        for (int i = 0; i < 2; ++i)
            client->fail(Method::getPlaylistTracks, HelperError::engineError(u"invalid_params"_s, u"gone"_s));
    }
    QStringList previewed() const {
        QStringList ids;
        for (const auto &request : client->sent()) {
            if (const auto *asked = caseOf<Request::GetPlaylistTracks>(request))
                ids.append(asked->id);
        }
        return ids;
    }
    void passDebounce() {
        settle();
        clock->advance(250ms);
        settle();
    }
    static AppModel::Launcher noLauncher() {
        return []() -> AppModel::Engine { throw HelperError::helperMissing(); };
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        clock = std::make_shared<ManualClock>();
        model = std::make_unique<AppModel>(client, surroundings(clock));
    }
    void cleanup() {
        model.reset();
        settle();
        client.reset();
    }

    void aSelectionIsPreviewedByNameAfterAQuarterOfASecond() {
        load({playlistOf(u"ten"_s, u"Mix 10"_s), folderOf(u"f"_s, u"A folder"_s), playlistOf(u"two"_s, u"Mix 2"_s),
              playlistOf(u"z"_s, u"Another"_s)});
        for (int i = 0; i < 3; ++i)
            client->reply(Method::getPlaylistTracks, "{\"tracks\":[]}");
        model->library()->setSelection({u"ten"_s, u"f"_s, u"two"_s, u"z"_s, u"gone"_s});
        model->selectionChanged();
        settle();
        QCOMPARE(clock->untilNextAlarm(), std::optional<Clock::Duration>(250ms));
        passDebounce();
        QCOMPARE(previewed(), (QStringList{u"z"_s, u"two"_s, u"ten"_s}));
    }

    void withOnlyFoldersSelectedThePreviewIsEmpty() {
        load({folderOf(u"f"_s, u"F"_s), playlistOf(u"a"_s, u"A"_s)});
        client->reply(Method::getPlaylistTracks, "{\"tracks\":[]}");
        model->library()->setSelection({u"a"_s});
        model->selectionChanged();
        passDebounce();
        QCOMPARE(model->preview()->groups()->count(), 1);
        model->library()->setSelection({u"f"_s});
        model->selectionChanged();
        QVERIFY(model->preview()->groups()->isEmpty());
        QVERIFY(!model->preview()->isLoading());
        passDebounce();
        QCOMPARE(previewed(), QStringList{u"a"_s});
    }

    void aSelectionDuringARunShowsNoPreviewAndKeepsTheRows_data() {
        QTest::addColumn<bool>("isPreparing");
        QTest::newRow("preparing") << true;
        QTest::newRow("running") << false;
    }

    void aSelectionDuringARunShowsNoPreviewAndKeepsTheRows() {
        QFETCH(bool, isPreparing);
        load({playlistOf(u"a"_s, u"A"_s)});
        client->reply(Method::getPlaylistTracks, "{\"tracks\":[]}");
        model->library()->setSelection({u"a"_s});
        model->selectionChanged();
        passDebounce();
        QCOMPARE(model->preview()->groups()->count(), 1);
        review(0);
        if (isPreparing)
            model->sync()->markPreparing();
        model->selectionChanged();
        QVERIFY(model->preview()->groups()->isEmpty());
        QCOMPARE(model->sync()->groups()->count(), 1);
        QCOMPARE(model->sync()->phase(), isPreparing ? SyncPhase::preparing : SyncPhase::running);
        passDebounce();
        QCOMPARE(previewed().size(), 1);
    }

    void aSelectionAfterARunClearsItsResults_data() {
        QTest::addColumn<int>("how");
        QTest::newRow("done") << 0;
        QTest::newRow("cancelled") << 1;
        QTest::newRow("interrupted") << 2;
    }

    void aSelectionAfterARunClearsItsResults() {
        QFETCH(int, how);
        review(1);
        if (how == 0)
            run({syncDone(1)});
        else if (how == 1)
            model->cancelSync();
        else
            run({HelperEvent::helperCrashed()});
        const auto banner = model->sync()->banner();
        model->selectionChanged();
        QCOMPARE(model->sync()->phase(), SyncPhase::idle);
        QVERIFY(model->sync()->groups()->isEmpty());
        QVERIFY(!model->sync()->summary());
        QCOMPARE(model->sync()->banner(), banner);
    }

    void aSelectionAfterARunWithoutRowsLeavesItDone() {
        run({syncStarted(u"run"_s), syncDone(0)});
        model->selectionChanged();
        QCOMPARE(model->sync()->phase(), SyncPhase::done);
        QVERIFY(model->sync()->summary());
    }

    void aSelectionThatComesBackIntoTheLibraryIsPreviewedAgain() {
        const std::vector list{playlistOf(u"a"_s, u"A"_s)};
        load(list);
        model->library()->setSelection({u"a"_s});
        model->startSync();
        settle();
        client->release("null");
        run({syncStarted(u"run-1"_s), syncDone(0)}); // the file is gone: it ends without rows
        load({});
        passDebounce();
        QVERIFY(model->preview()->groups()->isEmpty());
        client->reply(Method::getPlaylistTracks, tracks);
        load(list);
        passDebounce();
        QCOMPARE(model->preview()->trackCount(), 1);
        QVERIFY(!model->preview()->isLoading());
        load(list); // what shows is not asked for again
        passDebounce();
        QCOMPARE(previewed().size(), 1);
    }

    void anUnreadablePlaylistIsAskedForAgainByARefresh() {
        const std::vector list{playlistOf(u"a"_s, u"A"_s)};
        load(list);
        model->library()->setSelection({u"a"_s});
        failTracks();
        model->selectionChanged();
        passDebounce();
        QCOMPARE(model->preview()->trackCount(), 0);
        client->reply(Method::getPlaylistTracks, tracks);
        load(list);
        passDebounce();
        QCOMPARE(model->preview()->trackCount(), 1);
    }

    void aRunThatEndsWithoutRowsFetchesNothing() {
        load({playlistOf(u"a"_s, u"A"_s)});
        model->library()->setSelection({u"a"_s});
        model->startSync();
        run({syncDone(0)});
        passDebounce();
        QVERIFY(previewed().isEmpty());
    }

    void aRefreshBesideTheRowsOfARunLeavesThem() {
        load({playlistOf(u"p"_s, u"P"_s)});
        model->library()->setSelection({u"p"_s});
        review(1);
        run({syncDone(1)});
        load({playlistOf(u"p"_s, u"Renamed"_s)});
        passDebounce();
        QCOMPARE(model->sync()->groups()->count(), 1);
        QCOMPARE(model->sync()->phase(), SyncPhase::done);
        QVERIFY(previewed().isEmpty());
    }

    void commandsWithoutAClientDoNothing() {
        AppModel bare(noLauncher(), surroundings(clock));
        bare.selectionChanged();
        bare.startSync();
        bare.cancelSync();
        bare.submitReview(u"p#0"_s, ReviewDecision::accept());
        bare.skipTrack(u"p#0"_s);
        bare.retryTrack(u"p#0"_s);
        settle();
        QCOMPARE(bare.sync()->phase(), SyncPhase::idle);
        QVERIFY(!bare.sync()->banner());
    }

    void aSyncClearsThePreviewAndTheBannerAndAsksForTheSelection() {
        load({playlistOf(u"a"_s, u"A"_s)});
        client->reply(Method::getPlaylistTracks, "{\"tracks\":[]}");
        model->library()->setSelection({u"a"_s});
        model->selectionChanged();
        passDebounce();
        model->sync()->setBanner(SyncBanner::info(u"old"_s));
        model->startSync();
        QVERIFY(model->preview()->groups()->isEmpty());
        QCOMPARE(model->sync()->phase(), SyncPhase::preparing);
        QVERIFY(!model->sync()->banner());
        QCOMPARE(client->sentCount(Method::startSync), 0); // only in the task
        settle();
        const std::vector selection{PlaylistSelection{PlaylistSourceId::spotify, u"a"_s, u"A"_s}};
        QCOMPARE(client->sent().back(), Request::startSync(selection));
        client->release("null");
        settle();
        QCOMPARE(model->sync()->phase(), SyncPhase::preparing);
        QVERIFY(!model->sync()->banner());
    }

    void aSyncOfNothingStaysPreparingAndSaysSo() {
        review(1);
        run({syncDone(1)});
        model->startSync();
        settle();
        QCOMPARE(model->sync()->phase(), SyncPhase::preparing);
        QCOMPARE(model->sync()->banner(), std::optional(SyncBanner::info(u"Select one or more playlists first."_s)));
        QCOMPARE(client->sentCount(Method::startSync), 0);
        QCOMPARE(model->sync()->groups()->count(), 1); // the rows of the earlier run
        model->cancelSync();
        QCOMPARE(model->sync()->phase(), SyncPhase::cancelled);
    }

    void aRefusedSyncStaysPreparingAndShowsWhy_data() {
        QTest::addColumn<bool>("isHelperError");
        QTest::newRow("helper error") << true;
        QTest::newRow("another error") << false;
    }

    void aRefusedSyncStaysPreparingAndShowsWhy() {
        QFETCH(bool, isHelperError);
        load({playlistOf(u"a"_s, u"A"_s)});
        model->library()->setSelection({u"a"_s});
        if (isHelperError)
            client->fail(Method::startSync, HelperError::engineError(u"sync_in_progress"_s, u"busy"_s));
        else
            client->failWith(Method::startSync, std::make_exception_ptr(std::runtime_error("busy")));
        model->startSync();
        settle();
        QCOMPARE(model->sync()->phase(), SyncPhase::preparing);
        QCOMPARE(model->sync()->banner(), std::optional(SyncBanner::error(u"busy"_s)));
        QCOMPARE(client->sentCount(Method::startSync), 1);
    }

    void aSyncMayBeStartedWhileOneIsGoing() {
        load({playlistOf(u"a"_s, u"A"_s)});
        model->library()->setSelection({u"a"_s});
        review(0);
        model->startSync();
        settle();
        QCOMPARE(client->sentCount(Method::startSync), 1);
        QCOMPARE(model->sync()->groups()->count(), 1); // until the engine says syncStarted
    }

    void aRetryOfOneTrackIsASyncOfTheSelection() {
        load({playlistOf(u"a"_s, u"A"_s)});
        model->library()->setSelection({u"a"_s});
        model->retryTrack(u"whatever"_s);
        QCOMPARE(model->sync()->phase(), SyncPhase::preparing);
        settle();
        QCOMPARE(client->sentCount(Method::startSync), 1);
    }

    void aCancelShowsAtOnceAndNamesTheRunAsItIsWhenSent() {
        run({syncStarted(u"run-1"_s)});
        model->cancelSync();
        QCOMPARE(model->sync()->phase(), SyncPhase::cancelled);
        QVERIFY(client->notified().empty());
        model->sync()->route(syncStarted(u"run-2"_s));
        settle();
        QCOMPARE(client->notified(), std::vector{Request::cancelSync(u"run-2"_s)});
        QVERIFY(client->sent().empty());
    }

    void aCancelWithoutARunNamesNone() {
        model->cancelSync();
        settle();
        QCOMPARE(client->notified(), std::vector{Request::cancelSync()});
    }

    void failedNoticesLeaveNoTrace() {
        review(1);
        client->notifyFailure = std::make_exception_ptr(HelperError::helperUnavailable());
        model->submitReview(u"p#0"_s, ReviewDecision::accept());
        model->cancelSync();
        settle();
        QCOMPARE(client->notified().size(), 2u);
        QVERIFY(!model->sync()->banner());
        QCOMPARE(model->sync()->phase(), SyncPhase::cancelled);
        QCOMPARE(model->sync()->reviewCount(), 1);
    }

    void decisionsGoOutInOrderAndLeaveTheRows() {
        review(3);
        model->submitReview(u"p#0"_s, ReviewDecision::candidate(u"c1"_s));
        model->skipTrack(u"p#1"_s);
        model->submitReview(u"p#2"_s, ReviewDecision::url(u"https://x/1"_s));
        model->submitReview(u"p#2"_s, ReviewDecision::accept());
        settle();
        const std::vector<Request> expected{
            Request::reviewDecision(u"run-1"_s, u"p#0"_s, ReviewDecision::candidate(u"c1"_s)),
            Request::reviewDecision(u"run-1"_s, u"p#1"_s, ReviewDecision::skip()),
            Request::reviewDecision(u"run-1"_s, u"p#2"_s, ReviewDecision::url(u"https://x/1"_s)),
            Request::reviewDecision(u"run-1"_s, u"p#2"_s, ReviewDecision::accept())};
        QCOMPARE(client->notified(), expected);
        QVERIFY(client->sent().empty());
        QCOMPARE(model->sync()->reviewCount(), 3);
    }

    void aDecisionAfterACrashIsSentAllTheSame() {
        review(1);
        run({HelperEvent::helperCrashed()});
        QCOMPARE(model->sync()->reviewCount(), 1);
        model->skipTrack(u"p#0"_s);
        settle();
        QCOMPARE(client->notified(),
                 std::vector{Request::reviewDecision(u"run-1"_s, u"p#0"_s, ReviewDecision::skip())});
    }

    void aFocusedReviewOpensTheInspector() {
        review(2);
        model->focusReview(u"p#1"_s);
        QCOMPARE(model->focusedReviewTrackId(), Id(u"p#1"_s));
        QVERIFY(model->isInspectorPresented());
        QCOMPARE(model->resolvedFocusedReview(), model->sync()->groups()->at(0)->track(1));
    }

    void theFocusResolvesAsLongAsItsRowAwaitsReview() {
        review(2);
        QVERIFY(!model->resolvedFocusedReview());
        QSignalSpy told(model.get(), &AppModel::resolvedFocusedReviewChanged);
        model->focusReview(u"p#1"_s);
        QCOMPARE(told.count(), 1);
        run({trackFinished(u"p#0"_s, Finish::ok), downloadProgress(u"p#2"_s, 5)}); // others' rows
        QCOMPARE(told.count(), 1);
        run({step(u"p#1"_s, Phase::downloading)});
        QVERIFY(!model->resolvedFocusedReview());
        QCOMPARE(told.count(), 2);
        QCOMPARE(model->focusedReviewTrackId(), Id(u"p#1"_s)); // no event drives the focus
        QVERIFY(model->isInspectorPresented());
        run({trackFinished(u"p#1"_s, Finish::lowConfidence)});
        QVERIFY(!model->resolvedFocusedReview());
        run({needsReview(u"p#1"_s)});
        QVERIFY(model->resolvedFocusedReview());
        QCOMPARE(told.count(), 3);
        run({syncStarted(u"run-2"_s)});
        QVERIFY(!model->resolvedFocusedReview());
        QCOMPARE(told.count(), 4);
        model->focusReview(u"nobody"_s);
        QCOMPARE(told.count(), 4);
    }

    void openReviewFocusesTheHeadUnlessTheFocusStands_data() {
        QTest::addColumn<int>("waiting");
        QTest::addColumn<QString>("focus"); // null for none
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("isPresented");
        QTest::newRow("empty queue, no focus") << 0 << QString() << QString() << false;
        QTest::newRow("empty queue, a focus that has left it") << 0 << u"p#1"_s << QString() << false;
        QTest::newRow("no focus") << 2 << QString() << u"p#0"_s << true;
        QTest::newRow("a focus that has left the queue") << 2 << u"p#3"_s << u"p#0"_s << true;
        QTest::newRow("a focus in the queue") << 2 << u"p#1"_s << u"p#1"_s << true;
    }

    void openReviewFocusesTheHeadUnlessTheFocusStands() {
        QFETCH(int, waiting);
        QFETCH(QString, focus);
        QFETCH(QString, expected);
        review(waiting);
        if (!focus.isNull())
            model->setFocusedReviewTrackId(focus);
        model->setInspectorPresented(waiting == 0); // so that it has to change
        model->openReview();
        QCOMPARE(model->focusedReviewTrackId(), expected.isNull() ? Id() : Id(expected));
        QTEST(model->isInspectorPresented(), "isPresented");
    }

    void theFocusStepsRoundTheQueue_data() {
        QTest::addColumn<int>("waiting");
        QTest::addColumn<QString>("focus");
        QTest::addColumn<int>("delta");
        QTest::addColumn<QString>("expected");
        QTest::newRow("on") << 3 << u"p#0"_s << 1 << u"p#1"_s;
        QTest::newRow("back") << 3 << u"p#1"_s << -1 << u"p#0"_s;
        QTest::newRow("back from the first") << 3 << u"p#0"_s << -1 << u"p#2"_s;
        QTest::newRow("on from the last") << 3 << u"p#2"_s << 1 << u"p#0"_s;
        QTest::newRow("back from outside") << 3 << u"p#3"_s << -1 << u"p#2"_s;
        QTest::newRow("on from outside") << 3 << u"p#3"_s << 1 << u"p#1"_s;
        QTest::newRow("on from nowhere") << 3 << QString() << 1 << u"p#1"_s;
        QTest::newRow("one alone") << 1 << u"p#0"_s << 1 << u"p#0"_s;
        QTest::newRow("empty queue") << 0 << u"p#0"_s << 1 << QString();
        QTest::newRow("empty queue, back") << 0 << u"p#0"_s << -1 << QString();
    }

    void theFocusStepsRoundTheQueue() {
        QFETCH(int, waiting);
        QFETCH(QString, focus);
        QFETCH(int, delta);
        QFETCH(QString, expected);
        review(waiting);
        if (!focus.isNull())
            model->setFocusedReviewTrackId(focus);
        model->stepReview(delta);
        QCOMPARE(model->focusedReviewTrackId(), expected.isNull() ? Id() : Id(expected));
        QVERIFY(!model->isInspectorPresented());
    }

    void equalWritesTellNobody() {
        QSignalSpy focus(model.get(), &AppModel::focusedReviewTrackIdChanged);
        QSignalSpy inspector(model.get(), &AppModel::isInspectorPresentedChanged);
        QSignalSpy onboarding(model.get(), &AppModel::isOnboardingPresentedChanged);
        for (int i = 0; i < 2; ++i) {
            model->focusReview(u"x"_s);
            model->setOnboardingPresented(true);
        }
        QCOMPARE(focus.count(), 1);
        QCOMPARE(inspector.count(), 1);
        QCOMPARE(onboarding.count(), 1);
    }

    void aModelThatGoesWhileACommandIsUnderWayDisturbsNothing() {
        load({playlistOf(u"a"_s, u"A"_s)});
        model->library()->setSelection({u"a"_s});
        model->startSync();
        settle();
        QCOMPARE(client->held(), 1);
        model->cancelSync();
        model.reset();
        settle();
        QVERIFY(client->notified().empty()); // it had not begun
    }
};

QTEST_GUILESS_MAIN(TestAppModelCommands)
#include "tst_appmodel_commands.moc"

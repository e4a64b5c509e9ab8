#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "State/Records.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/MockHelperClient.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QCoro::Task<> await(QFuture<void> future) {
    co_await future;
}

/// An engine whose launch ends when the test says so.
struct Bench {
    std::shared_ptr<ScriptedClient> client = std::make_shared<ScriptedClient>();
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    OneShotRef<void> launched = std::make_shared<OneShot<void>>(std::make_exception_ptr(std::runtime_error("gone")));
    std::exception_ptr noEngine;
    int made = 0;
    int launches = 0;
    std::function<void()> onLaunch;
    std::unique_ptr<AppModel> model = std::make_unique<AppModel>(
        [this] {
            ++made;
            if (noEngine)
                std::rethrow_exception(noEngine);
            AppModel::Engine engine;
            engine.client = client;
            engine.start = [this] {
                ++launches;
                if (onLaunch)
                    onLaunch();
                return await(launched->future());
            };
            return engine;
        },
        surroundings(clock));

    void answerFetches() {
        client->reply(Method::getConfig, "{\"config\":" + writeJSON(SampleData::sampleConfig()) + "}");
        client->reply(Method::listPlaylists, "{\"playlists\":" + writeJSON(SampleData::playlists()) + "}");
    }
};

QString stateOf(const AppModel &model) {
    return u"%1, %2, %3"_s.arg(model.client() ? u"client"_s : u"no client"_s,
                               model.isReady() ? u"ready"_s : u"not ready"_s,
                               model.startupError().value_or(u"no error"_s));
}

} // namespace

class TestAppModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// What a model leaves behind ends on the loop.
    void cleanup() { settle(); }

    void aNewModelHasTheRunAndNothingElse() {
        const Bench bench;
        const AppModel &model = *bench.model;
        QCOMPARE(stateOf(model), u"no client, not ready, no error"_s);
        QVERIFY(model.sync());
        QVERIFY(!model.library() && !model.preview() && !model.settings() && !model.orphans());
        QCOMPARE(model.cliTool()->state(), CLIToolState::unknown());
        QVERIFY(model.automationPermission());
        QVERIFY(!model.diagnostics() && !model.toolProvisioning() && !model.setupCoordinator());
        QVERIFY(!model.focusedReviewTrackId());
        QVERIFY(!model.isInspectorPresented() && !model.isOnboardingPresented());
        QCOMPARE(bench.made, 0);
    }

    void theEngineComesUpInTheToldOrder() {
        Bench bench;
        AppModel &model = *bench.model;
        QStringList order;
        const auto note = [&](const QString &what) { return [&order, what] { order.append(what); }; };
        connect(&model, &AppModel::clientChanged, this, note(u"client"_s));
        connect(&model, &AppModel::libraryChanged, this, note(u"library"_s));
        connect(&model, &AppModel::previewChanged, this, note(u"preview"_s));
        connect(&model, &AppModel::settingsChanged, this, note(u"settings"_s));
        connect(&model, &AppModel::diagnosticsChanged, this, note(u"diagnostics"_s));
        connect(&model, &AppModel::orphansChanged, this, note(u"orphans"_s));
        connect(&model, &AppModel::toolProvisioningChanged, this, note(u"tools"_s));
        connect(model.cliTool(), &CLIToolStore::stateChanged, this, note(u"tool detected"_s));
        connect(&model, &AppModel::isReadyChanged, this, note(u"ready"_s));
        bench.onLaunch = note(u"launch"_s);
        const auto starting = observe(this, model.start());
        settle();
        QCOMPARE(order, (QStringList{u"client"_s, u"library"_s, u"preview"_s, u"settings"_s, u"diagnostics"_s,
                                     u"orphans"_s, u"tools"_s, u"tool detected"_s, u"launch"_s}));
        QCOMPARE(stateOf(model), u"client, not ready, no error"_s);
        QVERIFY(bench.client->sent().empty());

        bench.launched->fulfil();
        settle();
        QCOMPARE(order.last(), u"ready"_s);
        QCOMPARE(bench.client->sent(), std::vector{Request::getConfig()}); // the playlists only after it
        bench.client->release("{\"config\":" + writeJSON(SampleData::sampleConfig()) + "}");
        settle();
        QCOMPARE(bench.client->sent(), (std::vector{Request::getConfig(), Request::listPlaylists()}));
        QVERIFY(!starting->isOver());
        bench.client->release("{\"playlists\":[]}");
        settle();
        QVERIFY(starting->succeeded());
        QCOMPARE(stateOf(model), u"client, ready, no error"_s);
        QVERIFY(model.settings()->config());
        QCOMPARE(model.library()->loadState(), LoadState::loaded());
    }

    void theEventsOfTheLaunchAreNotLost() {
        Bench bench;
        bench.onLaunch = [&] { bench.client->emit(engineError(u"early"_s)); };
        const auto starting = observe(this, bench.model->start());
        settle();
        QVERIFY(!starting->isOver());
        QCOMPARE(bench.model->sync()->banner()->message, u"early"_s);
    }

    void aSecondStartWhileTheFirstIsSuspendedReturnsAtOnce() {
        Bench bench;
        const auto first = observe(this, bench.model->start());
        settle();
        const auto second = observe(this, bench.model->start());
        settle();
        QVERIFY(second->succeeded());
        QVERIFY(!first->isOver());
        bench.answerFetches();
        bench.launched->fulfil();
        settle();
        QVERIFY(first->succeeded());
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        QCOMPARE(bench.made, 1);
        QCOMPARE(bench.launches, 1);
        QCOMPARE(bench.client->sentCount(Method::getConfig), 1);
    }

    void aMissingEngineLeavesTheModelWithoutClient() {
        Bench bench;
        const LogCapture log;
        bench.noEngine = std::make_exception_ptr(HelperError::helperMissing());
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        const auto text = HelperError::helperMissing().errorDescription();
        QCOMPARE(stateOf(*bench.model), u"no client, not ready, "_s + text);
        QCOMPARE(bench.model->property("startupError").toString(), text);
        QVERIFY(!bench.model->library() && !bench.model->preview() && !bench.model->settings() &&
                !bench.model->orphans());
        QCOMPARE(bench.launches, 0);
        QCOMPARE(log.messages(u"app"_s), QStringList{u"startup failed: "_s + text});
        QVERIFY(log.entries().front().type == QtCriticalMsg);
    }

    void anEngineThatTurnsUpLaterIsFoundAndTheOldErrorStays() {
        Bench bench;
        const LogCapture log;
        bench.noEngine = std::make_exception_ptr(HelperError::helperMissing());
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        bench.noEngine = nullptr;
        bench.launched->fulfil();
        bench.answerFetches();
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        QCOMPARE(stateOf(*bench.model), u"client, ready, "_s + HelperError::helperMissing().errorDescription());
    }

    void aFailedLaunchStaysFailed_data() {
        QTest::addColumn<bool>("isHelperError");
        QTest::newRow("helper error") << true;
        QTest::newRow("another error") << false;
    }

    void aFailedLaunchStaysFailed() {
        QFETCH(bool, isHelperError);
        Bench bench;
        const LogCapture log;
        const auto failure = isHelperError ? std::make_exception_ptr(HelperError::helperUnavailable())
                                           : std::make_exception_ptr(std::runtime_error("no fork today"));
        const auto text = isHelperError ? HelperError::helperUnavailable().errorDescription() : u"no fork today"_s;
        bench.launched->fail(failure);
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        QCOMPARE(stateOf(*bench.model), u"client, not ready, "_s + text);
        QVERIFY(bench.model->library());
        QVERIFY(bench.client->sent().empty());
        QVERIFY(outcomeOf(bench.model->start()).succeeded());
        QCOMPARE(bench.launches, 1);
        QCOMPARE(log.messages(u"app"_s), QStringList{u"startup failed: "_s + text});
    }

    void theModelIsReadyByWhicheverComesFirst() {
        Bench bench;
        QSignalSpy ready(bench.model.get(), &AppModel::isReadyChanged);
        const auto starting = observe(this, bench.model->start());
        settle();
        bench.client->emit(HelperEvent::helperReady());
        settle();
        QVERIFY(bench.model->isReady());
        QVERIFY(bench.client->sent().empty()); // readiness fetches nothing
        bench.answerFetches();
        bench.launched->fulfil();
        settle();
        QVERIFY(starting->isOver());
        QCOMPARE(ready.count(), 1);
    }

    void aModelOverAClientHasAllStoresAndWaitsForReadiness() {
        const auto client = std::make_shared<MockHelperClient>();
        AppModel model(client, surroundings());
        QVERIFY(model.library() && model.preview() && model.settings() && model.orphans());
        QVERIFY(model.diagnostics() && model.toolProvisioning());
        QCOMPARE(model.diagnostics()->logCapacity(), 500);
        settle();
        QVERIFY(!model.isReady());
        QVERIFY(outcomeOf(model.start()).succeeded());
        QVERIFY(!model.isReady());
        client->play(false);
        QTRY_VERIFY(model.isReady());
        QVERIFY(outcomeOf(client->sent()).value->empty());
    }

    void aWholeRunComesThroughTheBridge() {
        const auto client = std::make_shared<MockHelperClient>(MockHelperClient::Responses(), SampleData::syncScript());
        AppModel model(client, surroundings());
        client->play(true);
        QTRY_COMPARE(model.sync()->phase(), SyncPhase::done);
        QCOMPARE(model.sync()->summary()->flagged, 1);
        QCOMPARE(model.sync()->groups()->at(0)->status(), std::optional(Finish::lowConfidence));
        QCOMPARE(model.sync()->reviewQueue().size(), 1);
        QCOMPARE(model.sync()->overallCompleted(), 2);
    }

    void aCrashLeavesReadinessAndARestartChangesNothing() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emitAll({HelperEvent::helperReady(), syncStarted(u"run"_s), playlistStarted(u"p"_s, {u"p#0"_s})});
        settle();
        bench.client->emit(HelperEvent::helperCrashed());
        settle();
        QVERIFY(model.isReady());
        QCOMPARE(model.sync()->phase(), SyncPhase::interrupted);
        const auto banner = model.sync()->banner();
        QSignalSpy ready(&model, &AppModel::isReadyChanged);
        bench.client->emit(HelperEvent::helperReady());
        settle();
        QCOMPARE(ready.count(), 0);
        QCOMPARE(model.sync()->phase(), SyncPhase::interrupted);
        QCOMPARE(model.sync()->banner(), banner);
        QCOMPARE(model.sync()->groups()->count(), 1);
        QVERIFY(bench.client->sent().empty());
    }

    void orphansGoToTheRunAndThenToTheirStore() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emitAll({playlistStarted(u"p"_s, {}), orphansFound(u"p"_s, {u"/a"_s, u"/a"_s}),
                               orphansFound({}, {u"/b"_s, u"/a"_s})});
        QStringList seen;
        connect(model.orphans(), &OrphansStore::pathsChanged, this,
                [&] { seen.append(u"run knew %1"_s.arg(model.sync()->groups()->at(0)->orphanPaths().size())); });
        settle();
        QCOMPARE(model.orphans()->paths(), (QStringList{u"/a"_s, u"/b"_s}));
        QCOMPARE(model.sync()->groups()->at(0)->orphanPaths(), (QStringList{u"/a"_s, u"/a"_s}));
        QCOMPARE(seen, (QStringList{u"run knew 2"_s, u"run knew 2"_s}));
    }

    void aLogLineGoesToTheDiagnosticsAndDuringAnInstallationToItsStoreToo() {
        Bench bench;
        const AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emit(logged(u"idle"_s));
        settle();
        QCOMPARE(model.diagnostics()->logs().size(), 1u);
        QVERIFY(!model.toolProvisioning()->lastLog());

        const auto provisioning = observe(this, model.toolProvisioning()->provision());
        bench.client->emit(logged(u"busy"_s));
        settle();
        QCOMPARE(model.diagnostics()->logs().back().message, u"busy"_s);
        QCOMPARE(model.toolProvisioning()->lastLog(), std::optional(u"busy"_s));
        QVERIFY(!provisioning->isOver());
    }

    void theProgressOfAToolGoesToItsStore() {
        Bench bench;
        const AppModel model(bench.client, surroundings(bench.clock));
        ServerEvent::ToolProgress progress;
        progress.tool = u"ffmpeg"_s;
        progress.phase = ToolPhase::verify;
        progress.percent = 12.5;
        progress.detail = u"Checking"_s;
        bench.client->emit(HelperEvent::server(progress));
        settle();
        const auto &tool = model.toolProvisioning()->tools()[1];
        QCOMPARE(tool.id, u"ffmpeg"_s);
        QCOMPARE(tool.phase, ToolPhase::verify);
        QCOMPARE(tool.percent, std::optional(12.5));
        QCOMPARE(tool.detail, std::optional(u"Checking"_s));
    }

    void anExpiredSpotifySignInRefreshesTheSettingsOnce() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.answerFetches();
        bench.client->emit(engineError(u"Sign in again"_s, u"spotify_auth_expired"_s));
        settle();
        QCOMPARE(bench.client->sent(), std::vector{Request::getConfig()});
        QVERIFY(model.settings()->config());
        QCOMPARE(model.sync()->banner(),
                 std::optional(SyncBanner::error(u"Sign in again"_s, u"spotify_auth_expired"_s)));
    }

    void otherEventsAskTheEngineNothing() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emitAll({engineError(u"x"_s, u"internal"_s), engineError(u"y"_s), logged(u"line"_s),
                               HelperEvent::server(ServerEvent::ToolProgress()),
                               HelperEvent::server(ServerEvent::Unknown()), HelperEvent::helperReady(),
                               HelperEvent::helperCrashed(), syncStarted(u"run"_s), syncDone(1)});
        settle();
        QCOMPARE(model.sync()->phase(), SyncPhase::done);
        QVERIFY(bench.client->sent().empty() && bench.client->notified().empty());
    }

    void theRouteDoesNotWaitForTheRefresh() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emitAll({engineError(u"x"_s, u"spotify_auth_expired"_s), syncStarted(u"run"_s)});
        settle();
        QCOMPARE(bench.client->held(), 1); // still unanswered
        QCOMPARE(model.sync()->phase(), SyncPhase::running);
    }

    void afterAShutdownNothingIsRouted() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emit(syncStarted(u"run"_s));
        settle();
        bench.client->emit(engineError(u"gathered but not yet applied"_s));
        model.shutdown();
        bench.client->emit(HelperEvent::helperCrashed());
        settle();
        QCOMPARE(model.sync()->phase(), SyncPhase::running);
        QVERIFY(!model.sync()->banner());
        QVERIFY(model.client());
        QVERIFY(model.library());
    }

    void aShutdownFromAnEventStopsBeforeTheNext() {
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        connect(model.sync(), &SyncStore::runIdChanged, &model, &AppModel::shutdown);
        bench.client->emitAll({syncStarted(u"run"_s), syncDone(1)});
        settle();
        QCOMPARE(model.sync()->phase(), SyncPhase::running);
    }

    void aShutdownWithoutAClientIsNothing() {
        const Bench bench;
        bench.model->shutdown();
    }

    void theModelGoesWithoutAShutdownAndLetsTheClientGo() {
        auto client = std::make_shared<ScriptedClient>();
        const std::weak_ptr watched(client);
        auto model = std::make_unique<AppModel>(client, surroundings());
        settle();
        client->emit(syncStarted(u"run"_s));
        model.reset();
        settle();
        QCOMPARE(watched.use_count(), 1); // the test's own
        client.reset();
        settle();
        QVERIFY(watched.expired());
    }

    void theModelMayGoWhileItStarts_data() {
        QTest::addColumn<bool>("isLaunched");
        QTest::newRow("in the launch") << false;
        QTest::newRow("in the first fetch") << true;
    }

    void theModelMayGoWhileItStarts() {
        QFETCH(bool, isLaunched);
        Bench bench;
        const auto starting = observe(this, bench.model->start());
        if (isLaunched)
            bench.launched->fulfil();
        settle();
        QCOMPARE(bench.client->held(), isLaunched ? 1 : 0);
        bench.model.reset();
        bench.launched->fulfil();
        QTRY_VERIFY(starting->isOver());
    }

    void aBurstOfEventsIsAppliedInOrderAndLeavesTheLoopItsTurns() {
        constexpr int count = 300'000;
        Bench bench;
        AppModel model(bench.client, surroundings(bench.clock));
        bench.client->emitAll({syncStarted(u"run"_s), playlistStarted(u"p"_s, {u"p#0"_s})});
        settle();
        std::vector<HelperEvent> events;
        events.reserve(count);
        for (int i = 1; i <= count; ++i)
            events.push_back(downloadProgress(u"p#0"_s, 100.0 * i / count));
        int applied = 0;
        int inOrder = 0;
        double last = 0;
        connect(model.sync()->groups(), &PlaylistGroups::rowChanged, this, [&](PlaylistGroup *group, int row) {
            const double now = group->track(row)->downloadFraction();
            inOrder += now > last;
            last = now;
            ++applied;
        });
        int turns = 0;
        QTimer timer;
        timer.callOnTimeout([&] { turns += applied > 0 && applied < count; });
        timer.start(0);
        bench.client->emitAll(std::move(events));
        QTRY_COMPARE_WITH_TIMEOUT(applied, count, 60'000);
        QCOMPARE(inOrder, count);
        QCOMPARE(last, 1.0);
        QVERIFY2(turns > 0, "the loop had no turn in the whole burst");
    }
};

QTEST_GUILESS_MAIN(TestAppModel)
#include "tst_appmodel.moc"

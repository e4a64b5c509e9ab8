#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Views/VPNLogic.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

using Count = std::optional<qint64>;
using Feedback = std::optional<VPNStatus::TestFeedback>;

namespace {

constexpr auto success = VPNStatus::TestFeedback::success;
constexpr auto failure = VPNStatus::TestFeedback::failure;

} // namespace

class VPNLogicTest : public QObject {
    Q_OBJECT

    std::shared_ptr<ManualClock> clock;
    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<VPNLogic> logic;

    static QByteArray config(bool configured, bool enabled) {
        SafeConfig config = SampleData::sampleConfig();
        config.proxy.configured = configured;
        config.proxy.enabled = enabled;
        return "{\"config\":" + writeJSON(config) + "}";
    }
    /// What the engine's configuration then says of the tunnel.
    void configure(bool configured, bool enabled) {
        client->reply(Method::getConfig, config(configured, enabled));
        SettingsStore *settings = model->settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        settle();
    }
    /// A tunnel that is on, whose subscription has no say.
    void turnOn() {
        client->reply(Method::proxyInfo, R"({"ok":false,"nodeCount":0})");
        configure(true, true);
    }
    void passTime(Clock::Duration duration) {
        clock->advance(duration);
        settle();
    }
    void startTest() {
        logic->runTest();
        settle();
    }
    Feedback feedback() const { return logic->status().feedback; }

private Q_SLOTS:
    void init() {
        clock = std::make_shared<ManualClock>();
        client = std::make_shared<ScriptedClient>();
        model = std::make_unique<AppModel>(client, surroundings(clock));
        logic = std::make_unique<VPNLogic>(*model, clock);
    }
    void cleanup() {
        logic.reset();
        model.reset();
        client.reset();
        settle();
    }

    void itIsThereOnlyWhileATunnelIsConfigured() {
        QVERIFY(!logic->present());
        configure(false, true);
        QVERIFY(!logic->present());
        QVERIFY(client->sentCount(Method::proxyInfo) == 0);
        configure(true, false);
        QVERIFY(logic->present());
        configure(false, false);
        QVERIFY(!logic->present());
    }

    void itFindsTheSettingsWhenTheyCome() {
        auto late = std::make_shared<ScriptedClient>();
        AppModel lateModel(
            [late] { return AppModel::Engine{.client = late, .start = []() -> QCoro::Task<> { co_return; }}; },
            surroundings());
        const VPNLogic lateLogic(lateModel, clock);
        QVERIFY(!lateLogic.present());
        late->reply(Method::getConfig, config(true, false));
        late->reply(Method::listPlaylists, "[]");
        startTask(&lateModel, [&lateModel](const std::stop_token &) { return lateModel.start(); });
        QTRY_VERIFY(lateLogic.present());
    }

    void theNodesAreCountedWhenItAppears() {
        client->reply(Method::proxyInfo, R"({"ok":true,"nodeCount":7})");
        configure(true, true);
        QCOMPARE(logic->status().nodeCount, Count(7));
        QCOMPARE(logic->labelText(), u"7 node(s)"_s);
        configure(true, true);
        QCOMPARE(client->sentCount(Method::proxyInfo), 1);
    }

    void theNodesAreCountedAgainWhenItIsTurnedOnAgain() {
        client->reply(Method::proxyInfo, R"({"ok":true,"nodeCount":7})");
        configure(true, true);
        configure(true, false);
        QCOMPARE(logic->status().nodeCount, Count());
        QCOMPARE(client->sentCount(Method::proxyInfo), 1);
        client->reply(Method::proxyInfo, R"({"ok":true,"nodeCount":8})");
        configure(true, true);
        QCOMPARE(logic->status().nodeCount, Count(8));
        QCOMPARE(client->sentCount(Method::proxyInfo), 2);
    }

    void aCountThatComesTooLateCountsNot() {
        configure(true, true);
        QCOMPARE(client->held(), 1);
        configure(true, false);
        client->release(R"({"ok":true,"nodeCount":7})");
        settle();
        QCOMPARE(logic->status().nodeCount, Count());
    }

    void theToggleAsksForTheOpposite_data() {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("on to off") << true;
        QTest::newRow("off to on") << false;
    }
    void theToggleAsksForTheOpposite() {
        QFETCH(bool, enabled);
        client->reply(Method::proxyInfo, R"({"ok":false,"nodeCount":0})");
        configure(true, enabled);
        logic->toggle();
        settle();
        ConfigPatch patch;
        patch.proxyEnabled = !enabled;
        QCOMPARE(client->sent().back(), Request::setConfig(patch));
        // Nothing is hoped for: it stays as the engine last said.
        QCOMPARE(logic->enabled(), enabled);
        client->reply(Method::getConfig, config(true, !enabled));
        client->release("null");
        settle();
        QCOMPARE(logic->enabled(), !enabled);
    }

    void aToggleThatFailsIsTheSettingsMatter() {
        turnOn();
        const QString before = logic->statusText();
        client->fail(Method::setConfig, HelperError::engineError(u"io"_s, u"no"_s));
        logic->toggle();
        settle();
        QCOMPARE(feedback(), std::nullopt);
        QCOMPARE(logic->statusText(), before);
        QVERIFY(model->settings()->lastError());
    }

    void onlyAnEnabledTunnelThatIsNotBeingTestedCanBeTested() {
        QVERIFY(!logic->canTest());
        configure(true, false);
        QVERIFY(!logic->canTest());
        turnOn();
        QVERIFY(logic->canTest());
        startTest();
        QVERIFY(!logic->canTest());
        client->release(R"({"ok":true})");
        settle();
        QVERIFY(logic->canTest());
    }

    void aPassedTestShowsForFourSeconds() {
        turnOn();
        QSignalSpy changed(logic.get(), &VPNLogic::changed);
        startTest();
        QVERIFY(logic->status().testing);
        QCOMPARE(logic->status().liveStatus(), ProxyStatusValue::connecting);
        QCOMPARE(client->sent().back(), Request::testProxy());
        QCOMPARE(clock->pendingAlarms(), 0);
        client->release(R"({"ok":true,"detail":"5 nodes"})");
        settle();
        QVERIFY(!logic->status().testing);
        QCOMPARE(feedback(), Feedback(success));
        QCOMPARE(logic->status().nodeCount, Count(5));
        passTime(3999ms);
        QCOMPARE(feedback(), Feedback(success));
        changed.clear();
        passTime(1ms);
        QCOMPARE(feedback(), Feedback());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(logic->status().nodeCount, Count(5));
    }

    void aPassWithoutANumberLeavesTheCount_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("no detail") << QByteArray(R"({"ok":true})");
        QTest::newRow("words") << QByteArray(R"({"ok":true,"detail":"Frankfurt"})");
        QTest::newRow("failed with a number") << QByteArray(R"({"ok":false,"detail":"9 nodes"})");
    }
    void aPassWithoutANumberLeavesTheCount() {
        QFETCH(QByteArray, answer);
        client->reply(Method::proxyInfo, R"({"ok":true,"nodeCount":7})");
        configure(true, true);
        startTest();
        client->release(answer);
        settle();
        QVERIFY(feedback());
        QCOMPARE(logic->status().nodeCount, Count(7));
    }

    void aFailedTestShowsForFourSeconds() {
        turnOn();
        startTest();
        client->releaseFailing(HelperError::requestTimedOut());
        settle();
        QCOMPARE(feedback(), Feedback(failure));
        QCOMPARE(logic->labelText(), u"Failed"_s);
        passTime(4s);
        QCOMPARE(feedback(), Feedback());
    }

    void withoutSettingsATestFails() {
        AppModel bare([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, surroundings());
        VPNLogic bareLogic(bare, clock);
        bareLogic.runTest();
        settle();
        QCOMPARE(bareLogic.status().feedback, Feedback(failure));
        QVERIFY(!bareLogic.status().testing);
        passTime(4s);
        QCOMPARE(bareLogic.status().feedback, Feedback());
    }

    void aNewerTestKeepsItsFeedbackForItsWholeTime() {
        turnOn();
        startTest();
        client->release(R"({"ok":true})");
        settle();
        passTime(3s);
        startTest();
        QCOMPARE(feedback(), Feedback()); // a new test takes the old one's result away at once
        client->release(R"({"ok":false})");
        settle();
        QCOMPARE(feedback(), Feedback(failure));
        passTime(1s); // here the first one's time is over
        QCOMPARE(feedback(), Feedback(failure));
        passTime(2999ms);
        QCOMPARE(feedback(), Feedback(failure));
        passTime(1ms);
        QCOMPARE(feedback(), Feedback());
    }

    void theLiveStateDoesNotDisturbAResult() {
        turnOn();
        startTest();
        client->release(R"({"ok":true})");
        settle();
        model->sync()->route(HelperEvent::server(ServerEvent::ProxyStatus{ProxyStatusValue::down, {}}));
        QCOMPARE(logic->statusText(), u"Connection test passed"_s);
        passTime(4s);
        QCOMPARE(logic->statusText(), u"Disconnected — Soulseek is paused"_s);
    }

    void whatTheEngineSaysOfTheTunnelShowsAtOnce() {
        turnOn();
        QSignalSpy changed(logic.get(), &VPNLogic::changed);
        model->sync()->route(HelperEvent::server(ServerEvent::ProxyStatus{ProxyStatusValue::connected, u"3 nodes"_s}));
        QVERIFY(changed.count() > 0);
        QCOMPARE(logic->statusText(), u"Connected (3 nodes)"_s);
    }

    void oneThatComesBackKnowsNothingOfBefore() {
        turnOn();
        startTest();
        client->release(R"({"ok":true,"detail":"5 nodes"})");
        settle();
        startTest();
        configure(false, true);
        QCOMPARE(clock->pendingAlarms(), 0);
        turnOn();
        QVERIFY(!logic->status().testing);
        QCOMPARE(feedback(), Feedback());
        QCOMPARE(logic->status().nodeCount, Count());
        client->release(R"({"ok":true,"detail":"6 nodes"})"); // to the test of the one that went
        settle();
        QCOMPARE(feedback(), Feedback());
        QCOMPARE(logic->status().nodeCount, Count());
    }

    void itMayGoInTheMiddleOfATest() {
        turnOn();
        startTest();
        logic.reset();
        client->release(R"({"ok":true})");
        settle();
        QCOMPARE(clock->pendingAlarms(), 0);
        client->reply(Method::proxyInfo, R"({"ok":false,"nodeCount":0})");
        logic = std::make_unique<VPNLogic>(*model, clock);
        startTest();
        client->release(R"({"ok":true})");
        settle();
        QCOMPARE(clock->pendingAlarms(), 1);
        logic.reset();
        settle();
        QCOMPARE(clock->pendingAlarms(), 0);
    }
};

QTEST_GUILESS_MAIN(VPNLogicTest)
#include "tst_vpnlogic.moc"

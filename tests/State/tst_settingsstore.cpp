#include "State/SettingsStore.h"
#include "Support/Await.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray wrapped(const SafeConfig &config) {
    return "{\"config\":" + writeJSON(config) + "}";
}

QByteArray withoutSources(QByteArray json) {
    return json.replace("\"sources\"", "\"other\"");
}

} // namespace

class TestSettingsStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<SettingsStore> store;

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        store = std::make_unique<SettingsStore>(client);
    }
    void cleanup() {
        store.reset();
        client.reset();
    }

    void beforeTheFirstRefreshEverythingIsFalse() {
        QVERIFY(!store->config());
        QVERIFY(!store->lastError());
        for (const char *flag : {"hasConfig", "appleMusicConnected", "spotifyConnected", "soundcloudConnected",
                                 "acoustidConfigured", "proxyConfigured", "proxyEnabled"})
            QVERIFY2(!store->property(flag).toBool(), flag);
        QVERIFY(!store->effectiveSpotifyClientId());
    }

    void theFlagsAreTheConfigurationsOwn_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<QByteArray>("flag");
        int which = 0;
        for (const char *flag : {"appleMusicConnected", "spotifyConnected", "soundcloudConnected", "acoustidConfigured",
                                 "proxyConfigured", "proxyEnabled"})
            QTest::newRow(flag) << which++ << QByteArray(flag);
    }

    void theFlagsAreTheConfigurationsOwn() {
        QFETCH(int, which);
        QFETCH(QByteArray, flag);
        SafeConfig config;
        (which == 0   ? config.appleMusicConnected
         : which == 1 ? config.spotifyConnected
         : which == 2 ? config.soundcloudConnected
         : which == 3 ? config.acoustidConfigured
         : which == 4 ? config.proxy.configured
                      : config.proxy.enabled) = true;
        client->reply(Method::getConfig, wrapped(config));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        for (const char *each : {"appleMusicConnected", "spotifyConnected", "soundcloudConnected", "acoustidConfigured",
                                 "proxyConfigured", "proxyEnabled"})
            QVERIFY2(store->property(each).toBool() == (flag == each), each);
    }

    void aRefreshReadsTheConfiguration() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->config(), std::optional(SampleData::sampleConfig()));
        QCOMPARE(store->effectiveSpotifyClientId(), SampleData::sampleConfig().effectiveSpotifyClientId);
        QCOMPARE(client->sent(), std::vector{Request::getConfig()});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{std::chrono::seconds(15)});
    }

    void aBareConfigurationCostsASecondRequest() {
        client->reply(Method::getConfig, writeJSON(SampleData::sampleConfig()));
        client->reply(Method::getConfig, writeJSON(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->config(), std::optional(SampleData::sampleConfig()));
        QCOMPARE(client->sent(), (std::vector{Request::getConfig(), Request::getConfig()}));
    }

    void aConfigurationThatLacksAFieldFailsAsAWhole() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        for (const QByteArray &reply : {withoutSources(wrapped(SampleData::sampleConfig())),
                                        withoutSources(writeJSON(SampleData::sampleConfig()))})
            client->reply(Method::getConfig, reply);
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QVERIFY2(store->lastError() && store->lastError()->contains(u"sources"_s), "says what is missing");
        QCOMPARE(store->config(), std::optional(SampleData::sampleConfig()));
    }

    void twoFailuresShowTheSecondAndKeepTheOldConfiguration() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        client->fail(Method::getConfig, HelperError::engineError(u"internal"_s, u"first"_s));
        client->fail(Method::getConfig, HelperError::requestTimedOut());
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->lastError(), std::optional(HelperError::requestTimedOut().errorDescription()));
        QCOMPARE(store->property("lastError").toString(), HelperError::requestTimedOut().errorDescription());
        QCOMPARE(store->config(), std::optional(SampleData::sampleConfig()));
    }

    void aSuccessClearsTheFailure() {
        client->fail(Method::getConfig, HelperError::helperCrashed());
        client->fail(Method::getConfig, HelperError::helperCrashed());
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QVERIFY(store->lastError());
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QVERIFY(!store->lastError());
    }

    void equalReadsTellNobody() {
        QSignalSpy config(store.get(), &SettingsStore::configChanged);
        QSignalSpy error(store.get(), &SettingsStore::lastErrorChanged);
        for (int i = 0; i < 2; ++i) {
            client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
            QVERIFY(outcomeOf(store->refresh()).succeeded());
        }
        QCOMPARE(config.count(), 1);
        QCOMPARE(error.count(), 0);
        for (int i = 0; i < 4; ++i)
            client->fail(Method::getConfig, HelperError::helperCrashed());
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(error.count(), 1);
    }

    void theLastRefreshToFinishWins() {
        auto other = SampleData::sampleConfig();
        other.spotifyConnected = !other.spotifyConnected;
        const auto first = observe(this, store->refresh());
        const auto second = observe(this, store->refresh());
        QTRY_COMPARE(client->held(), 2);
        client->release(wrapped(SampleData::sampleConfig()));
        client->release(wrapped(other));
        QTRY_VERIFY(first->isOver() && second->isOver());
        QCOMPARE(store->config(), std::optional(other));
    }

    void aPatchIsSentAndReadBack() {
        ConfigPatch patch;
        patch.outputDir = u"~/Music/Elsewhere"_s;
        auto after = SampleData::sampleConfig();
        after.outputDir = patch.outputDir;
        client->reply(Method::setConfig, "null");
        client->reply(Method::getConfig, wrapped(after));
        QVERIFY(outcomeOf(store->apply(patch)).succeeded());
        QCOMPARE(client->sent(), (std::vector{Request::setConfig(patch), Request::getConfig()}));
        QCOMPARE(client->timeouts().front(), std::chrono::nanoseconds(std::chrono::seconds(15)));
        QCOMPARE(store->config(), std::optional(after));
    }

    void aRejectedPatchShowsTheEnginesWordsAndTheOldValue() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        client->fail(Method::setConfig, HelperError::engineError(u"invalid_params"_s, u"No such folder."_s));
        QVERIFY(outcomeOf(store->apply({})).succeeded());
        QCOMPARE(store->lastError(), std::optional(u"No such folder."_s));
        QCOMPARE(store->config(), std::optional(SampleData::sampleConfig()));
        QCOMPARE(client->sentCount(Method::getConfig), 1);

        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QVERIFY(!store->lastError());
    }

    void anotherFailureIsShownInItsPlainWords() {
        client->failWith(Method::setConfig, std::make_exception_ptr(std::runtime_error("out of luck")));
        QVERIFY(outcomeOf(store->apply({})).succeeded());
        QCOMPARE(store->lastError(), std::optional(u"out of luck"_s));
    }

    void theTunnelIsSwitchedByAPatchOfNothingElse() {
        client->reply(Method::setConfig, "null");
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(store->setProxyEnabled(true)).succeeded());
        ConfigPatch expected;
        expected.proxyEnabled = true;
        QCOMPARE(client->sent(), (std::vector{Request::setConfig(expected), Request::getConfig()}));
    }

    void accountCallsOfTheTunnelReadBackOnlyWhatTheEngineTook_data() {
        QTest::addColumn<bool>("connects");
        QTest::addColumn<bool>("taken");
        for (const bool connects : {true, false}) {
            for (const bool taken : {true, false})
                QTest::addRow("%s, %s", connects ? "subscribe" : "disconnect", taken ? "taken" : "refused")
                    << connects << taken;
        }
    }

    void accountCallsOfTheTunnelReadBackOnlyWhatTheEngineTook() {
        QFETCH(bool, connects);
        QFETCH(bool, taken);
        const auto method = connects ? Method::storeAccountToken : Method::disconnectAccount;
        if (taken) {
            client->reply(method, "null");
            client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        } else {
            client->fail(method, HelperError::requestTimedOut());
        }
        const QString link = u"https://tunnel.example/sub"_s;
        QVERIFY(outcomeOf(connects ? store->setProxySubscription(link) : store->disconnectProxy()).succeeded());
        QCOMPARE(client->sent().front(), connects ? Request::storeAccountToken(AccountService::proxy, link)
                                                  : Request::disconnectAccount(AccountService::proxy));
        QCOMPARE(client->timeouts().front(), std::chrono::nanoseconds(std::chrono::seconds(15)));
        QCOMPARE(client->sentCount(Method::getConfig), taken ? 1 : 0);
        QCOMPARE(store->lastError().has_value(), !taken);
        QCOMPARE(store->config().has_value(), taken);
    }

    void onlyAnInfoThatIsOkGivesACount_data() {
        QTest::addColumn<QByteArray>("info");
        QTest::addColumn<std::optional<qint64>>("count");
        QTest::newRow("ok") << QByteArray(R"({"ok":true,"nodeCount":7})") << std::optional<qint64>(7);
        QTest::newRow("not ok") << QByteArray(R"({"ok":false,"nodeCount":7})") << std::optional<qint64>();
        QTest::newRow("without a count") << QByteArray(R"({"ok":true})") << std::optional<qint64>();
        QTest::newRow("no reply") << QByteArray() << std::optional<qint64>();
    }

    void onlyAnInfoThatIsOkGivesACount() {
        QFETCH(QByteArray, info);
        QFETCH(std::optional<qint64>, count);
        if (info.isEmpty())
            client->fail(Method::proxyInfo, HelperError::helperCrashed());
        else
            client->reply(Method::proxyInfo, info);
        const auto outcome = outcomeOf(store->proxyNodeCount());
        QVERIFY(outcome.value);
        QCOMPARE(*outcome.value, count);
        QCOMPARE(client->sent(), std::vector{Request::proxyInfo()});
        QVERIFY(!store->lastError());
    }

    void aTestOfTheTunnelTellsItsResult_data() {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<std::optional<QString>>("detail");
        QTest::newRow("works") << QByteArray(R"({"ok":true,"detail":"Berlin"})") << true << std::optional(u"Berlin"_s);
        QTest::newRow("fails") << QByteArray(R"({"ok":false})") << false << std::optional<QString>();
        QTest::newRow("engine restarts") << QByteArray() << false
                                         << std::optional(HelperError::helperCrashed().errorDescription());
    }

    void aTestOfTheTunnelTellsItsResult() {
        QFETCH(QByteArray, reply);
        QFETCH(bool, ok);
        QFETCH(std::optional<QString>, detail);
        if (reply.isEmpty())
            client->fail(Method::testProxy, HelperError::helperCrashed());
        else
            client->reply(Method::testProxy, reply);
        const auto outcome = outcomeOf(store->testProxy());
        QVERIFY(outcome.value);
        QCOMPARE(outcome.value->ok, ok);
        QCOMPARE(outcome.value->detail, detail);
        QCOMPARE(client->sent(), std::vector{Request::testProxy()});
        QVERIFY(!store->lastError());
    }

    void aTestOfTheTunnelLeavesAnEarlierFailureStanding() {
        client->fail(Method::setConfig, HelperError::requestTimedOut());
        QVERIFY(outcomeOf(store->apply({})).succeeded());
        client->reply(Method::testProxy, R"({"ok":true})");
        QVERIFY(outcomeOf(store->testProxy()).succeeded());
        client->reply(Method::proxyInfo, R"({"ok":true,"nodeCount":1})");
        QVERIFY(outcomeOf(store->proxyNodeCount()).succeeded());
        QCOMPARE(store->lastError(), std::optional(HelperError::requestTimedOut().errorDescription()));
    }

    void aStoreThatGoesWhileItWaitsDisturbsNothing_data() {
        QTest::addColumn<int>("call");
        QTest::newRow("refresh") << 0;
        QTest::newRow("apply") << 1;
        QTest::newRow("proxyNodeCount") << 2;
        QTest::newRow("testProxy") << 3;
    }

    void aStoreThatGoesWhileItWaitsDisturbsNothing() {
        QFETCH(int, call);
        const auto follow = [&](auto task) {
            const auto outcome = observe(this, std::move(task));
            QTRY_COMPARE(client->held(), 1);
            store.reset();
            QTRY_VERIFY(outcome->isOver());
        };
        if (call == 0)
            follow(store->refresh());
        else if (call == 1)
            follow(store->apply({}));
        else if (call == 2)
            follow(store->proxyNodeCount());
        else
            follow(store->testProxy());
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

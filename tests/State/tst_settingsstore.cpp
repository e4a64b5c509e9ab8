#include "State/SettingsStore.h"
#include "Support/Await.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray wrapped(const SafeConfig &config) {
    return "{\"config\":" + writeJSON(config) + "}";
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

    void aStoreThatGoesWhileItWaitsDisturbsNothing() {
        const auto refreshing = observe(this, store->refresh());
        QTRY_COMPARE(client->held(), 1);
        store.reset();
        QTRY_VERIFY(refreshing->isOver());
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

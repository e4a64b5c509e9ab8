#include "State/ToolProvisioningStore.h"
#include "Support/Await.h"
#include "Support/ScriptedClient.h"

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Provisioning = ToolProvisioningStore::Phase;
using ToolProgress = ToolProvisioningStore::ToolProgress;

Q_DECLARE_METATYPE(HelperError)

namespace {

QByteArray resultOf(bool ok, const std::vector<ToolStatusDTO> &tools) {
    return writeJSON(ProvisionToolsResult{ok, tools});
}

QByteArray bothInstalled() {
    return resultOf(true,
                    {{u"yt-dlp"_s, u"yt-dlp"_s, u"ok"_s, u"2026.01"_s}, {u"ffmpeg"_s, u"ffmpeg"_s, u"ok"_s, u"7"_s}});
}

ToolProgress seeded(const QString &id) {
    ToolProgress tool;
    tool.id = tool.name = id;
    return tool;
}

std::vector<ToolProgress> seededTools() {
    return {seeded(u"yt-dlp"_s), seeded(u"ffmpeg"_s)};
}

} // namespace

class TestToolProvisioningStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<ToolProvisioningStore> store;

    void provision(const QByteArray &result) {
        client->reply(Method::provisionTools, result);
        QVERIFY(outcomeOf(store->provision()).succeeded());
    }
    void provisionFailing(const HelperError &failure) {
        client->fail(Method::provisionTools, failure);
        QVERIFY(outcomeOf(store->provision()).succeeded());
    }
    const ToolProgress &ytdlp() const { return store->tools()[0]; }
    const ToolProgress &ffmpeg() const { return store->tools()[1]; }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        store = std::make_unique<ToolProvisioningStore>(client);
    }
    void cleanup() {
        store.reset();
        client.reset();
    }

    void aNewStoreIsIdleWithItsTwoToolsInOrder() {
        QCOMPARE(store->phase(), Provisioning::idle);
        QVERIFY(!store->isReady());
        QCOMPARE(store->tools(), seededTools());
        QVERIFY(!store->lastError() && !store->lastLog());
        for (const auto &tool : store->tools()) {
            QCOMPARE(tool.phase, ToolPhase::download);
            QVERIFY(!tool.percent && !tool.detail);
        }
    }

    void aRunAsksOnceAndWaitsTenMinutes() {
        provision(bothInstalled());
        QCOMPARE(client->sent(), std::vector{Request::provisionTools()});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{std::chrono::seconds(600)});
    }

    void aResultThatIsOkMakesItReady() {
        provision(bothInstalled());
        QCOMPARE(store->phase(), Provisioning::ready);
        QVERIFY(store->isReady());
        QVERIFY(!store->lastError());
        for (const auto &tool : store->tools()) {
            QCOMPARE(tool.phase, ToolPhase::done);
            QCOMPARE(tool.percent, std::optional(100.0));
        }
        QCOMPARE(ytdlp().detail, std::optional(u"2026.01"_s));
    }

    void anyOtherStatusThanOkIsAnErrorThatKeepsItsPercent_data() {
        QTest::addColumn<QString>("status");
        for (const auto &status : {u"failed"_s, u"OK"_s, u"ok "_s, QString()})
            QTest::newRow(qPrintable(u"<%1>"_s.arg(status))) << status;
    }

    void anyOtherStatusThanOkIsAnErrorThatKeepsItsPercent() {
        QFETCH(QString, status);
        const auto running = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        store->apply(u"ffmpeg"_s, ToolPhase::download, 40, {});
        client->release(resultOf(false, {{u"yt-dlp"_s, {}, u"ok"_s, {}}, {u"ffmpeg"_s, {}, status, u"No space."_s}}));
        QTRY_VERIFY(running->isOver());
        QCOMPARE(store->phase(), Provisioning::failed);
        QCOMPARE(store->lastError(), std::optional(u"No space."_s));
        QCOMPARE(ffmpeg().phase, ToolPhase::error);
        QCOMPARE(ffmpeg().percent, std::optional(40.0));
        QCOMPARE(ffmpeg().detail, std::optional(u"No space."_s));
        QCOMPARE(ytdlp().phase, ToolPhase::done);
    }

    void theResultsOwnVerdictCounts() {
        provision(resultOf(false, {{u"yt-dlp"_s, {}, u"ok"_s, {}}, {u"ffmpeg"_s, {}, u"ok"_s, {}}}));
        QCOMPARE(store->phase(), Provisioning::failed);
        QCOMPARE(store->lastError(), std::optional(u"Some required tools could not be installed."_s));
        QCOMPARE(ytdlp().phase, ToolPhase::done);
        QCOMPARE(ffmpeg().phase, ToolPhase::done);

        provision(resultOf(true, {{u"ffmpeg"_s, {}, u"missing"_s, u"?"_s}}));
        QCOMPARE(store->phase(), Provisioning::ready);
        QVERIFY(!store->lastError());
        QCOMPARE(ffmpeg().phase, ToolPhase::error);
    }

    void aToolOutsideTheRowsCountsForTheErrorAlone() {
        provision(resultOf(false, {{u"other"_s, {}, u"failed"_s, u"Other failed."_s},
                                   {u"ffmpeg"_s, {}, u"failed"_s, u"ffmpeg failed."_s}}));
        QCOMPARE(store->tools().size(), 2u);
        QCOMPARE(store->lastError(), std::optional(u"Other failed."_s));
        QCOMPARE(ytdlp(), seeded(u"yt-dlp"_s));
    }

    void aRequestThatFailsLeavesTheRowsAsTheEventsLeftThem_data() {
        QTest::addColumn<HelperError>("failure");
        QTest::newRow("time-out") << HelperError::requestTimedOut();
        QTest::newRow("no engine") << HelperError::helperUnavailable();
        QTest::newRow("crash") << HelperError::helperCrashed();
    }

    void aRequestThatFailsLeavesTheRowsAsTheEventsLeftThem() {
        QFETCH(HelperError, failure);
        const auto running = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        store->apply(u"yt-dlp"_s, ToolPhase::verify, 70, u"Checking"_s);
        const auto rows = store->tools();
        client->releaseFailing(failure);
        QTRY_VERIFY(running->isOver());
        QCOMPARE(store->phase(), Provisioning::failed);
        QCOMPARE(store->lastError(), std::optional(failure.errorDescription()));
        QCOMPARE(store->tools(), rows);
    }

    void theRunIsOverBeforeItsErrorIsTold() {
        std::vector<Provisioning> told;
        connect(store.get(), &ToolProvisioningStore::lastErrorChanged, this, [&] { told.push_back(store->phase()); });
        provisionFailing(HelperError::helperCrashed());
        provision(resultOf(false, {}));
        QCOMPARE(told, (std::vector{Provisioning::failed, Provisioning::running, Provisioning::failed}));
    }

    void anotherFailureIsShownInItsPlainWords() {
        client->failWith(Method::provisionTools, std::make_exception_ptr(std::runtime_error("out of luck")));
        QVERIFY(outcomeOf(store->provision()).succeeded());
        QCOMPARE(store->lastError(), std::optional(u"out of luck"_s));
    }

    void aMalformedResultFails() {
        provision("{\"ok\":true}");
        QCOMPARE(store->phase(), Provisioning::failed);
        QVERIFY(store->lastError());
    }

    void aSecondRunStartsAfreshBeforeItAsks() {
        const auto first = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        store->apply(u"ffmpeg"_s, ToolPhase::install, 90, u"Unpacking"_s);
        store->note(u"line"_s);
        client->releaseFailing(HelperError::requestTimedOut());
        QTRY_VERIFY(first->isOver());
        QVERIFY(store->lastError() && store->lastLog());

        const auto second = observe(this, store->retry());
        // Already now, before the request has gone anywhere.
        QCOMPARE(store->phase(), Provisioning::running);
        QCOMPARE(store->tools(), seededTools());
        QVERIFY(!store->lastError() && !store->lastLog());
        QTRY_COMPARE(client->held(), 1);
        client->release(bothInstalled());
        QTRY_VERIFY(second->isOver());
        QCOMPARE(store->phase(), Provisioning::ready);
        QCOMPARE(client->sentCount(Method::provisionTools), 2);
    }

    void readyIsLeftOnlyByAnotherRun() {
        provision(bothInstalled());
        store->apply(u"ffmpeg"_s, ToolPhase::error, {}, u"late"_s);
        store->note(u"late"_s);
        QCOMPARE(store->phase(), Provisioning::ready);
        provisionFailing(HelperError::helperCrashed());
        QCOMPARE(store->phase(), Provisioning::failed);
    }

    void anEventOfAnUnknownToolChangesNothing() {
        const QSignalSpy changed(store.get(), &ToolProvisioningStore::toolsChanged);
        store->apply(u"sox"_s, ToolPhase::done, 100, u"there"_s);
        QCOMPARE(store->tools(), seededTools());
        QCOMPARE(changed.count(), 0);
    }

    void whatAnEventDoesNotSayStays() {
        store->apply(u"yt-dlp"_s, ToolPhase::download, 40, u"Downloading"_s);
        store->apply(u"yt-dlp"_s, ToolPhase::verify, {}, {});
        QCOMPARE(ytdlp().phase, ToolPhase::verify);
        QCOMPARE(ytdlp().percent, std::optional(40.0));
        QCOMPARE(ytdlp().detail, std::optional(u"Downloading"_s));
        store->apply(u"yt-dlp"_s, ToolPhase::install, 60, u"Unpacking"_s);
        QCOMPARE(ytdlp().percent, std::optional(60.0));
        QCOMPARE(ytdlp().detail, std::optional(u"Unpacking"_s));
        QCOMPARE(ffmpeg(), seeded(u"ffmpeg"_s));
    }

    void anEventAfterTheResultStillChangesItsRow() {
        provision(bothInstalled());
        store->apply(u"ffmpeg"_s, ToolPhase::error, {}, u"late"_s);
        QCOMPARE(ffmpeg().phase, ToolPhase::error);
        QCOMPARE(ffmpeg().percent, std::optional(100.0));
    }

    void aLogLineCountsDuringARunAlone() {
        store->note(u"idle"_s);
        QVERIFY(!store->lastLog());
        const auto running = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        store->note(u"one"_s);
        store->note(u"two"_s);
        QCOMPARE(store->lastLog(), std::optional(u"two"_s));
        client->release(bothInstalled());
        QTRY_VERIFY(running->isOver());
        store->note(u"ready"_s);
        QCOMPARE(store->lastLog(), std::optional(u"two"_s)); // kept until the next run
        provisionFailing(HelperError::helperCrashed());
        store->note(u"failed"_s);
        QVERIFY(!store->lastLog());
    }

    void equalWritesTellNobody() {
        store->apply(u"ffmpeg"_s, ToolPhase::verify, 10, u"x"_s);
        const QSignalSpy tools(store.get(), &ToolProvisioningStore::toolsChanged);
        store->apply(u"ffmpeg"_s, ToolPhase::verify, 10, u"x"_s);
        store->apply(u"ffmpeg"_s, ToolPhase::verify, {}, {});
        QCOMPARE(tools.count(), 0);
        const QSignalSpy phase(store.get(), &ToolProvisioningStore::phaseChanged);
        const auto running = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        const QSignalSpy log(store.get(), &ToolProvisioningStore::lastLogChanged);
        store->note(u"one"_s);
        store->note(u"one"_s);
        QCOMPARE(log.count(), 1);
        client->release(bothInstalled());
        QTRY_VERIFY(running->isOver());
        QCOMPARE(phase.count(), 2);
    }

    void aStoreThatGoesWhileItWaitsDisturbsNothing() {
        const auto running = observe(this, store->provision());
        QTRY_COMPARE(client->held(), 1);
        store.reset();
        QTRY_VERIFY(running->isOver());
    }
};

QTEST_GUILESS_MAIN(TestToolProvisioningStore)
#include "tst_toolprovisioningstore.moc"

#include "State/DiagnosticsStore.h"
#include "Support/Await.h"
#include "Support/ScriptedClient.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using LogLevel = ServerEvent::LogLevel;

namespace {

const QByteArray bareChecks = R"([{"id":"ffmpeg","title":"ffmpeg","status":"ok","detail":"6.0","fixable":false},
                                  {"id":"folder","status":"not a word we know"}])";
const QByteArray wrappedChecks = "{\"checks\":" + bareChecks + "}";
const QByteArray noChecks = R"({"checks":[]})";
const QByteArray withoutStatus = R"({"checks":[{"id":"ffmpeg"}]})";

} // namespace

class TestDiagnosticsStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<DiagnosticsStore> store;

    void run(const QByteArray &reply) {
        client->reply(Method::runDoctor, reply);
        QVERIFY(outcomeOf(store->runDoctor()).succeeded());
    }
    QStringList ids() const {
        QStringList found;
        for (const auto &check : store->checks())
            found.append(check.id);
        return found;
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        store = std::make_unique<DiagnosticsStore>(client);
    }
    void cleanup() {
        store.reset();
        client.reset();
    }

    void aNewStoreIsEmpty() {
        QVERIFY(store->checks().empty());
        QVERIFY(store->logs().empty());
        QVERIFY(!store->lastError());
        QVERIFY(!store->isRunning());
        QCOMPARE(store->logCapacity(), 500);
    }

    void theNewest500LinesSurviveInTheirOrder() {
        for (int i = 0; i < 500; ++i)
            store->appendLog(LogLevel::info, QString::number(i));
        QCOMPARE(store->logs().size(), 500u);
        QCOMPARE(store->logs().front().message, u"0"_s);
        store->appendLog(LogLevel::warn, u"500"_s);
        QCOMPARE(store->logs().size(), 500u);
        for (int i = 0; i < 500; ++i)
            QCOMPARE(store->logs().at(i).message, QString::number(i + 1));
        QCOMPARE(store->logs().back().level, LogLevel::warn);
    }

    void aLineHasAnIdentityAndTheTimeOfItsArrival() {
        const auto before = QDateTime::currentDateTime();
        for (int i = 0; i < 3; ++i)
            store->appendLog(LogLevel::debug, u"the same"_s);
        const auto after = QDateTime::currentDateTime();
        QSet<QUuid> ids;
        for (const auto &entry : store->logs()) {
            QVERIFY(!entry.id.isNull());
            ids.insert(entry.id);
            QVERIFY(before <= entry.date && entry.date <= after);
        }
        QCOMPARE(ids.size(), 3);
    }

    void aDoctorsReplyReplacesTheChecks() {
        run(wrappedChecks);
        QCOMPARE(ids(), (QStringList{u"ffmpeg"_s, u"folder"_s}));
        const DoctorCheck &full = store->checks()[0];
        QCOMPARE(full.title, std::optional(u"ffmpeg"_s));
        QCOMPARE(full.status, u"ok"_s);
        QCOMPARE(full.detail, std::optional(u"6.0"_s));
        QCOMPARE(full.fixable, std::optional(false));
        QCOMPARE(client->sent(), std::vector{Request::runDoctor()});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{std::chrono::seconds(15)});
        run(noChecks);
        QVERIFY(store->checks().empty());
        QVERIFY(!store->lastError());
    }

    void aCheckNeedsOnlyItsIdAndItsStatus() {
        run(wrappedChecks);
        const DoctorCheck &bare = store->checks()[1];
        QCOMPARE(bare.status, u"not a word we know"_s); // free text, kept as it comes
        QVERIFY(!bare.title && !bare.detail && !bare.fixable);
        client->reply(Method::runDoctor, withoutStatus);
        run(withoutStatus);
        QVERIFY(store->lastError());
        QCOMPARE(ids(), (QStringList{u"ffmpeg"_s, u"folder"_s}));
    }

    void aBareListCostsASecondRequest() {
        client->reply(Method::runDoctor, bareChecks);
        run(bareChecks);
        QCOMPARE(client->sentCount(Method::runDoctor), 2);
        QCOMPARE(ids(), (QStringList{u"ffmpeg"_s, u"folder"_s}));
        QVERIFY(!store->lastError());
    }

    void twoFailuresKeepTheOldChecksAndShowTheSecond() {
        run(wrappedChecks);
        client->fail(Method::runDoctor, HelperError::engineError(u"internal"_s, u"first"_s));
        client->fail(Method::runDoctor, HelperError::engineError(u"internal"_s, u"second"_s));
        QVERIFY(outcomeOf(store->runDoctor()).succeeded());
        QCOMPARE(store->lastError(), std::optional(u"second"_s));
        QCOMPARE(ids(), (QStringList{u"ffmpeg"_s, u"folder"_s}));
        QVERIFY(!store->isRunning());
        run(noChecks);
        QVERIFY(!store->lastError());
    }

    void theDoctorIsRunningUntilTheLastTryEnds() {
        const QSignalSpy changed(store.get(), &DiagnosticsStore::isRunningChanged);
        const auto running = observe(this, store->runDoctor());
        QVERIFY(store->isRunning());
        QTRY_COMPARE(client->held(), 1);
        client->releaseFailing(HelperError::requestTimedOut());
        QTRY_COMPARE(client->held(), 1);
        QVERIFY(store->isRunning());
        client->release(bareChecks);
        QTRY_VERIFY(running->isOver());
        QVERIFY(!store->isRunning());
        QCOMPARE(changed.count(), 2);
    }

    void aRunDoesNotKeepASecondOneFromStarting() {
        const auto first = observe(this, store->runDoctor());
        const auto second = observe(this, store->runDoctor());
        QTRY_COMPARE(client->held(), 2);
        client->release(wrappedChecks);
        client->release(noChecks);
        QTRY_VERIFY(first->isOver() && second->isOver());
        QVERIFY(store->checks().empty());
    }

    void equalChecksTellNobody() {
        const QSignalSpy changed(store.get(), &DiagnosticsStore::checksChanged);
        run(wrappedChecks);
        run(wrappedChecks);
        QCOMPARE(changed.count(), 1);
    }

    void aFixIsFollowedByARunOfTheDoctor() {
        client->reply(Method::doctorFix, "null");
        client->reply(Method::runDoctor, noChecks);
        QVERIFY(outcomeOf(store->fix(u"folder"_s)).succeeded());
        QCOMPARE(client->sent(), (std::vector{Request::doctorFix(u"folder"_s), Request::runDoctor()}));
        QCOMPARE(client->timeouts().front(), std::chrono::nanoseconds(std::chrono::seconds(15)));
    }

    void aFixThatFailsStartsNoRun() {
        client->fail(Method::doctorFix, HelperError::engineError(u"internal"_s, u"No rights."_s));
        QVERIFY(outcomeOf(store->fix(u"folder"_s)).succeeded());
        QCOMPARE(store->lastError(), std::optional(u"No rights."_s));
        QCOMPARE(client->sent(), std::vector{Request::doctorFix(u"folder"_s)});
        QVERIFY(!store->isRunning());
    }

    void aStoreThatGoesWhileItWaitsDisturbsNothing() {
        const auto running = observe(this, store->runDoctor());
        const auto fixing = observe(this, store->fix(u"folder"_s));
        QTRY_COMPARE(client->held(), 2);
        store.reset();
        QTRY_VERIFY(running->isOver() && fixing->isOver());
    }
};

QTEST_GUILESS_MAIN(TestDiagnosticsStore)
#include "tst_diagnosticsstore.moc"

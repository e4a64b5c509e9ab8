#include "ConnectedClient.h"

#include "Platform/ProcessSignals.h"
#include "Support/LogCapture.h"

using namespace zelk;
using namespace std::chrono_literals;

class TestHelperClientLife : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }
    /// What was cancelled with the objects of a test ends on the next turn.
    void cleanup() { QCoreApplication::processEvents(); }

    void aCleanExitFailsWhatIsOpenAndEndsTheStreamWithoutAWordOfACrash() {
        const LogCapture capture;
        Connected c({"expect testProxy"_s, "exit 0"_s});
        QVERIFY(c.start());
        const auto request = c.request<EmptyResult>(Request::testProxy());
        QTRY_VERIFY(request->failedWith(HelperError::helperCrashed()));
        QTRY_VERIFY(c.ended);
        QCOMPARE(c.events, QStringList{"ready"_s});
        c.clock->advance(1h);
        QTest::qWait(20);
        QCOMPARE(c.engine.launches(), 1);
        QCOMPARE(capture.messages("client"_s), QStringList{"helper exited cleanly"_s});
        QCOMPARE(capture.levels("helper exited cleanly"_s), QSet{QtInfoMsg});
        QVERIFY(outcomeOf(c.client->send(Request::testProxy())).failedWith(HelperError::helperUnavailable()));
        QVERIFY(c.start());
        QCOMPARE(c.engine.launches(), 1);
    }

    void aCrashFailsWhatIsOpenAndTheEngineComesBackAfterTheDelay() {
        const LogCapture capture;
        Connected c({"launch"_s, "expect testProxy"_s, "signal 9"_s, "launch"_s, "expect proxyInfo"_s,
                     R"(send {"id":"%id%","ok":true})"_s, "drain"_s});
        QVERIFY(c.start());
        const auto open = c.request<EmptyResult>(Request::testProxy());
        QTRY_VERIFY(open->failedWith(HelperError::helperCrashed()));
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "crashed"_s}));

        // In the gap there is no engine, and no request waits for one.
        QVERIFY(outcomeOf(c.client->send(Request::testProxy())).failedWith(HelperError::helperUnavailable()));
        QTRY_VERIFY(c.clock->untilNextAlarm() == Clock::Duration(250ms));
        c.clock->advance(250ms - 1ns);
        QTest::qWait(5);
        QCOMPARE(c.engine.launches(), 1);
        c.clock->advance(1ns);
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "crashed"_s, "ready"_s}));

        const auto next = c.request<EmptyResult>(Request::proxyInfo());
        QTRY_VERIFY(next->succeeded());
        // Nothing is sent again, and the counter goes on.
        QCOMPARE(c.engine.lines(),
                 (QStringList{R"({"id":"r1","method":"testProxy"})"_s, R"({"id":"r3","method":"proxyInfo"})"_s}));
        QCOMPARE(capture.messages("client"_s),
                 (QStringList{"helper crashed: status=9 reason=signal 9"_s, "restarting helper in 0.25s"_s}));
        QCOMPARE(capture.levels("helper crashed: "_s), QSet{QtCriticalMsg});
        QCOMPARE(capture.levels("restarting helper"_s), QSet{QtInfoMsg});
    }

    void anEngineThatDiesAtOnceIsLaunchedSixTimesAndNoMore() {
        const LogCapture capture;
        Connected c({"exit 7"_s});
        QVERIFY(c.start());
        for (const Clock::Duration delay : {Clock::Duration(250ms), Clock::Duration(500ms), Clock::Duration(1s),
                                            Clock::Duration(2s), Clock::Duration(4s)}) {
            QTRY_VERIFY(c.clock->untilNextAlarm() == delay);
            c.clock->advance(delay);
        }
        QTRY_VERIFY(c.ended);
        QCOMPARE(c.engine.launches(), 6);
        QCOMPARE(c.events.count("ready"_s), 6);
        QCOMPARE(c.events.count("crashed"_s), 6);
        QCOMPARE(c.clock->pendingAlarms(), 0);
        QCOMPARE(capture.messages("helper"_s, "helper crashed 6 times in 10s; giving up"_s).size(), 1);
        QCOMPARE(capture.levels("helper crashed 6 times"_s), QSet{QtCriticalMsg});
        QVERIFY(outcomeOf(c.client->send(Request::testProxy())).failedWith(HelperError::helperUnavailable()));
    }

    void aRelaunchThatFailsEndsTheStream() {
        const LogCapture capture;
        QTemporaryDir folder;
        const QString program = folder.filePath("engine"_s);
        QVERIFY(QFile::copy(ScriptedEngine::program(), program));
        Connected c({"expect testProxy"_s, "exit 1"_s}, program);
        QVERIFY(c.start());
        QVERIFY(QFile::remove(program));
        QVERIFY(outcomeOf(c.client->send(Request::testProxy())).failedWith(HelperError::helperCrashed()));
        QVERIFY(c.advanceWhenAwaited(250ms));
        QTRY_VERIFY(c.ended);
        QCOMPARE(c.events, (QStringList{"ready"_s, "crashed"_s}));
        QCOMPARE(capture.messages("client"_s, "helper relaunch failed: "_s),
                 QStringList{"helper relaunch failed: The zelk helper is not available."_s});
        QCOMPARE(capture.levels("helper relaunch failed"_s), QSet{QtCriticalMsg});
        QCOMPARE(capture.levels("helper failed to launch"_s), QSet{QtCriticalMsg});
    }

    void startingTwiceLaunchesOnce() {
        Connected c({"drain"_s});
        const auto first = observe(&c, c.client->start());
        const auto second = observe(&c, c.client->start());
        QTRY_VERIFY(first->succeeded() && second->succeeded());
        QTRY_COMPARE(c.events, QStringList{"ready"_s});
        QTest::qWait(20);
        QCOMPARE(c.engine.launches(), 1);
    }

    void aFailedStartIsFinal() {
        Connected c({"drain"_s}, "/nonexistent/zelk"_s);
        QVERIFY(outcomeOf(c.client->start()).failedWith(HelperError::helperUnavailable()));
        QVERIFY(outcomeOf(c.client->start()).succeeded());
        QVERIFY(c.events.isEmpty());
        QVERIFY(outcomeOf(c.client->send(Request::getConfig())).failedWith(HelperError::helperUnavailable()));
    }

    void theReleaseFailsWhatIsOpenAndEndsTheStream() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto open = c.request<EmptyResult>(Request::testProxy());
        QTRY_COMPARE(c.engine.lines().size(), 1);
        c.client.reset();
        QTRY_VERIFY(open->failedWith(HelperError::helperUnavailable()));
        QTRY_VERIFY(c.ended);
        c.process.reset();
        QTRY_VERIFY(c.engine.log().contains("eof"_s));
    }

    void theReleaseBetweenTheTwoTriesForTracksFailsTheCall() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto tracks = observe(&c, c.client->getPlaylistTracks(PlaylistSourceId::apple, "p"_s, std::nullopt));
        QTRY_COMPARE(c.engine.lines().size(), 1);
        c.client.reset();
        QTRY_VERIFY(tracks->failedWith(HelperError::helperUnavailable()));
        QCOMPARE(c.engine.lines().size(), 1);
    }

    void aStoppedEngineTimesRequestsOutAndGoesOnHoldingNobody() {
        Connected c({"stall"_s});
        QVERIFY(c.start());
        std::vector<QString> paths(1, QString(10'000'000, u'x'));
        const auto big = c.request<EmptyResult>(Request::trashOrphans(QStringList(paths.cbegin(), paths.cend())));
        const auto behind = c.request<EmptyResult>(Request::testProxy());
        QTRY_COMPARE(c.clock->pendingAlarms(), 2);
        c.clock->advance(15s);
        QTRY_VERIFY(big->failedWith(HelperError::requestTimedOut()));
        QTRY_VERIFY(behind->failedWith(HelperError::requestTimedOut()));
    }

    void theReleaseReachesAnEngineThatDoesNotReadAndEndsEveryWait() {
        Connected c({"stall"_s});
        QVERIFY(c.start());
        const auto big = c.request<EmptyResult>(Request::trashOrphans(QStringList(QString(10'000'000, u'x'))));
        const auto notice = observe(&c, c.client->notify(Request::cancelSync()));
        QTRY_COMPARE(c.clock->pendingAlarms(), 1);
        QTest::qWait(20);
        const std::weak_ptr<HelperProcess> supervisor = c.process;
        c.process.reset();
        c.client.reset();
        QTRY_VERIFY(big->failedWith(HelperError::helperUnavailable()));
        QTRY_VERIFY(notice->isOver() && !notice->succeeded());
        QTRY_VERIFY(supervisor.expired());
    }

    void aReleaseRightAfterACallEndsTheCall() {
        Connected c({"drain"_s});
        const auto start = observe(&c, c.client->start());
        const auto notice = observe(&c, c.client->notify(Request::cancelSync()));
        const auto call = c.request<EmptyResult>(Request::testProxy());
        c.client.reset();
        QTRY_VERIFY(start->isOver() && notice->isOver() && call->isOver());
    }
};

QTEST_GUILESS_MAIN(TestHelperClientLife)
#include "tst_helperclient_life.moc"

#include "ConnectedClient.h"

#include "Platform/ProcessSignals.h"
#include "Support/LogCapture.h"

#include <limits>

using namespace zelk;
using namespace std::chrono_literals;

class TestHelperClient : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }
    /// What was cancelled with the objects of a test ends on the next turn.
    void cleanup() { QCoreApplication::processEvents(); }

    void repliesInReverseOrderBothComplete() {
        Connected c({"expect getPlaylistTracks A"_s, "expect testProxy B"_s, R"(send {"id":"%B%","ok":true})"_s,
                     R"(send {"id":"%A%","ok":true,"result":{"tracks":[)"_s + previewTrack + "]}}"_s, "drain"_s});
        QVERIFY(c.start());
        const auto first = c.request<PreviewTracksResult>(tracksOf("p"_s));
        const auto second = c.request<EmptyResult>(Request::testProxy());
        QTRY_VERIFY(first->isOver() && second->isOver());
        QVERIFY(second->succeeded());
        QCOMPARE(first->value->tracks.size(), 1U);
    }

    void theOrderOfCallsIsTheOrderOfLinesAndIdsCountOnFromOne() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto a = c.request<EmptyResult>(Request::getConfig());
        const auto b = observe(&c, c.client->notify(Request::cancelSync()));
        const auto d = c.request<EmptyResult>(Request::listPlaylists());
        QTRY_COMPARE(c.engine.lines(),
                     (QStringList{R"({"id":"r1","method":"getConfig"})"_s, R"({"id":"r2","method":"cancelSync"})"_s,
                                  R"({"id":"r3","method":"listPlaylists"})"_s}));
        QTRY_VERIFY(b->succeeded());
    }

    void aLateReplyDisturbsNothingAndIsLoggedOnce() {
        const LogCapture capture;
        Connected c({"expect testProxy"_s, "expect proxyInfo B"_s,
                     R"(send {"id":"r1","ok":true,"result":{"late":true}})"_s, R"(send {"id":"%B%","ok":true})"_s,
                     "drain"_s});
        QVERIFY(c.start());
        const auto first = c.request<EmptyResult>(Request::testProxy(), 15s);
        QTRY_COMPARE(c.engine.lines().size(), 1);
        c.clock->advance(15s);
        QTRY_VERIFY(first->isOver());
        QVERIFY(first->failedWith(HelperError::requestTimedOut()));
        const auto second = c.request<EmptyResult>(Request::proxyInfo());
        QTRY_VERIFY(second->succeeded());
        QCOMPARE(capture.messages("client"_s, "dropping undecodable line"_s),
                 QStringList{R"(dropping undecodable line: {"id":"r1","ok":true,"result":{"late":true}})"_s});
        QCOMPARE(c.events, QStringList{"ready"_s});
    }

    void aRequestTimesOutAtItsTimeAndNotBefore() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto request = c.request<EmptyResult>(Request::connectSpotify(), 300s);
        QTRY_COMPARE(c.engine.lines().size(), 1);
        c.clock->advance(300s - 1ns);
        QTest::qWait(5);
        QVERIFY(!request->isOver());
        c.clock->advance(1ns);
        QTRY_VERIFY(request->failedWith(HelperError::requestTimedOut()));
    }

    void theStandardTimeOutIsFifteenSeconds() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto request = observe(&c, c.client->send(Request::getConfig()));
        QTRY_COMPARE(c.engine.lines().size(), 1);
        QVERIFY(c.clock->untilNextAlarm() == Clock::Duration(15s));
        QVERIFY(!request->isOver());
    }

    void aReplyToANotifyIsLoggedAndNothingElse() {
        const LogCapture capture;
        Connected c({"expect cancelSync"_s, R"(send {"id":"%id%","ok":true})"_s, log("after"_s), "drain"_s});
        QVERIFY(c.start());
        QVERIFY(outcomeOf(c.client->notify(Request::cancelSync())).succeeded());
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "after"_s}));
        QCOMPARE(capture.messages("client"_s), QStringList{R"(dropping undecodable line: {"id":"r1","ok":true})"_s});
    }

    void aReplyThatComesTwiceCompletesOnce() {
        const LogCapture capture;
        Connected c({"expect testProxy"_s, R"(send {"id":"%id%","ok":true})"_s, R"(send {"id":"%id%","ok":true})"_s,
                     log("after"_s), "drain"_s});
        QVERIFY(c.start());
        const auto request = c.request<EmptyResult>(Request::testProxy());
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "after"_s}));
        QVERIFY(request->succeeded());
        QCOMPARE(capture.messages("client"_s, "dropping undecodable line"_s).size(), 1);
    }

    void aReplysShapeDecidesWhatTheCallerSees_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("emptySucceeds");
        QTest::addColumn<QString>("recordFailure"); // empty: succeeds
        QTest::newRow("the right shape") << R"("ok":true,"result":{"tracks":[]})" << true << "";
        QTest::newRow("no result")
            << R"("ok":true)" << true
            << "Could not understand a message from the helper: result did not match PreviewTracksResult: ";
        QTest::newRow("a null result")
            << R"("ok":true,"result":null)" << true
            << "Could not understand a message from the helper: result did not match PreviewTracksResult: ";
        QTest::newRow("another shape")
            << R"("ok":true,"result":{"tracks":"none"})" << true
            << "Could not understand a message from the helper: result did not match PreviewTracksResult: tracks";
        QTest::newRow("a text")
            << R"("ok":true,"result":"x")" << true
            << "Could not understand a message from the helper: result did not match PreviewTracksResult: ";
        QTest::newRow("an error") << R"("ok":false,"error":{"code":"sync_in_progress","message":"Busy."})" << false
                                  << "Busy.";
        QTest::newRow("an error of a code nobody knows")
            << R"("ok":false,"error":{"code":"odd","message":"Odd.","data":{"a":1}})" << false << "Odd.";
        QTest::newRow("not ok and no error")
            << R"("ok":false)" << false
            << "Could not understand a message from the helper: ok:false with no error payload";
    }

    void aReplysShapeDecidesWhatTheCallerSees() {
        QFETCH(QString, reply);
        QFETCH(bool, emptySucceeds);
        QFETCH(QString, recordFailure);
        const QString send = QStringLiteral(R"(send {"id":"%id%",)") + reply + u'}';
        Connected c({"expect testProxy"_s, send, "expect getPlaylistTracks"_s, send, "drain"_s});
        QVERIFY(c.start());
        const auto empty = c.request<EmptyResult>(Request::testProxy());
        QTRY_VERIFY(empty->isOver());
        QCOMPARE(empty->succeeded(), emptySucceeds);
        const auto record = c.request<PreviewTracksResult>(tracksOf("p"_s));
        QTRY_VERIFY(record->isOver());
        QCOMPARE(record->succeeded(), recordFailure.isEmpty());
        QVERIFY2(recordFailure.isEmpty() || record->failureText().startsWith(recordFailure),
                 qPrintable(record->failureText()));
    }

    void anEnginesErrorKeepsItsCode() {
        Connected c({"expect testProxy"_s,
                     R"(send {"id":"%id%","ok":false,"error":{"code":"sync_in_progress","message":"Busy."}})"_s,
                     "drain"_s});
        QVERIFY(c.start());
        const auto request = c.request<EmptyResult>(Request::testProxy());
        QTRY_VERIFY(request->failedWith(HelperError::engineError("sync_in_progress"_s, "Busy."_s)));
    }

    void tracksInTheWrappedShapeCostOneRequest() {
        Connected c({"expect getPlaylistTracks"_s,
                     R"(send {"id":"%id%","ok":true,"result":{"tracks":[)"_s + previewTrack + "]}}"_s, "drain"_s});
        QVERIFY(c.start());
        const auto tracks = outcomeOf(c.client->getPlaylistTracks(PlaylistSourceId::apple, "p"_s, "P"_s));
        QCOMPARE(tracks.value->size(), 1U);
        QCOMPARE(c.engine.lines(),
                 QStringList{
                     R"({"id":"r1","method":"getPlaylistTracks","params":{"source":"apple","id":"p","name":"P"}})"_s});
    }

    void tracksInTheBareShapeCostTwoRequests() {
        const QString bare = R"(send {"id":"%id%","ok":true,"result":[)"_s + previewTrack + "]}"_s;
        Connected c({"expect getPlaylistTracks"_s, bare, "expect getPlaylistTracks"_s, bare, "drain"_s});
        QVERIFY(c.start());
        const auto tracks = outcomeOf(c.client->getPlaylistTracks(PlaylistSourceId::apple, "p"_s, std::nullopt));
        QCOMPARE(tracks.value->size(), 1U);
        QCOMPARE(c.engine.lines().size(), 2);
        QVERIFY(c.engine.lines().constLast().startsWith(R"({"id":"r2","method":"getPlaylistTracks")"_s));
    }

    void aSilentEngineCostsTracksTwiceTheTimeOut() {
        Connected c({"drain"_s});
        QVERIFY(c.start());
        const auto tracks = observe(&c, c.client->getPlaylistTracks(PlaylistSourceId::apple, "p"_s, std::nullopt));
        QTRY_COMPARE(c.engine.lines().size(), 1);
        c.clock->advance(15s);
        QTRY_COMPARE(c.engine.lines().size(), 2);
        QVERIFY(!tracks->isOver());
        c.clock->advance(15s);
        QTRY_VERIFY(tracks->failedWith(HelperError::requestTimedOut()));
    }

    void aCancelledCallEndsAtOnceAndItsReplyDisturbsNothing() {
        Connected c({"expect testProxy"_s, "expect proxyInfo B"_s, R"(send {"id":"r1","ok":true})"_s,
                     R"(send {"id":"%B%","ok":true})"_s, "drain"_s});
        QVERIFY(c.start());
        std::stop_source stop;
        const auto call = observe(&c, c.client->request<EmptyResult>(Request::testProxy(), 15s, stop.get_token()));
        QTRY_COMPARE(c.engine.lines().size(), 1);
        stop.request_stop();
        QTRY_VERIFY(call->isOver());
        QCOMPARE(call->failureText(), QString::fromUtf8(Cancelled().what()));
        QCOMPARE(c.clock->pendingAlarms(), 0);
        QVERIFY(outcomeOf(c.client->send(Request::proxyInfo())).succeeded());
    }

    void aCallThatIsCancelledBeforehandSendsNothing() {
        Connected c({"expect proxyInfo"_s, R"(send {"id":"%id%","ok":true})"_s, "drain"_s});
        QVERIFY(c.start());
        std::stop_source stop;
        stop.request_stop();
        QVERIFY(!outcomeOf(c.client->request<EmptyResult>(Request::testProxy(), 15s, stop.get_token())).succeeded());
        QVERIFY(outcomeOf(c.client->send(Request::proxyInfo())).succeeded());
        QCOMPARE(c.engine.lines().size(), 1);
    }

    void aRequestThatCannotBeWrittenFailsAndWritesNoLine() {
        Connected c({"expect proxyInfo"_s, R"(send {"id":"%id%","ok":true})"_s, "drain"_s});
        QVERIFY(c.start());
        ConfigPatch patch;
        patch.run.emplace();
        patch.run->toleranceSec = std::numeric_limits<double>::quiet_NaN();
        const auto refused = outcomeOf(c.client->send(Request::setConfig(patch)));
        QVERIFY(refused.failure && !refused.failureText().isEmpty());
        QVERIFY(!outcomeOf(c.client->notify(Request::setConfig(patch))).succeeded());
        QVERIFY(outcomeOf(c.client->send(Request::proxyInfo())).succeeded());
        QCOMPARE(c.engine.lines().size(), 1);
    }

    void whatTheEngineSaidBeforeItsReplyIsOnTheStreamBeforeTheReply() {
        Connected c({"expect testProxy"_s,
                     R"(raw {"event":"log","data":{"level":"info","message":"before"}}\n{"id":"%id%","ok":true}\n)"_s,
                     "drain"_s});
        QVERIFY(c.start());
        QStringList seenAtReply;
        startTask(&c, [&](std::stop_token) -> QCoro::Task<> {
            auto asking = c.client->send(Request::testProxy());
            co_await asking;
            seenAtReply = c.events;
        });
        QTRY_VERIFY(!seenAtReply.isEmpty());
        QCOMPARE(seenAtReply, (QStringList{"ready"_s, "before"_s}));
    }
};

QTEST_GUILESS_MAIN(TestHelperClient)
#include "tst_helperclient.moc"

#include "Platform/BootClock.h"
#include "Platform/ProcessSignals.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedEngine.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperError.h"

#include <QPointer>
#include <QTest>

#include <limits>

using namespace zelk;
using namespace std::chrono_literals;

namespace {

/// Transcripts are full of texts: "like this"_s.
QString operator""_s(const char *text, std::size_t size) {
    return QString::fromUtf8(text, static_cast<qsizetype>(size));
}

/// A client of an engine that plays a transcript, with its events noted in words as they come.
class Connected : public QObject {
public:
    explicit Connected(const QStringList &commands, const QString &program = ScriptedEngine::program())
        : engine(commands), process(std::make_shared<HelperProcess>(program, engine.arguments(), clock)),
          client(std::make_shared<HelperClient>(process, clock)) {
        startTask(this, [self = QPointer(this), reader = client->events()](std::stop_token stop) -> QCoro::Task<> {
            while (true) {
                const auto event = co_await reader.next(stop);
                if (!event)
                    break;
                self->events.append(inWords(*event));
            }
            self->ended = true;
        });
    }

    bool start() const { return outcomeOf(client->start()).succeeded(); }

    template<typename T>
    auto request(Request request, std::chrono::nanoseconds timeout = HelperClienting::standardTimeout) {
        return observe(this, client->request<T>(std::move(request), timeout));
    }

    /// Moves the clock once somebody waits for it.
    bool advanceWhenAwaited(Clock::Duration duration) const {
        const bool awaited =
            QTest::qWaitFor([&] { return clock->untilNextAlarm() && *clock->untilNextAlarm() <= duration; });
        clock->advance(duration);
        return awaited;
    }

    static QString inWords(const HelperEvent &event) {
        if (std::holds_alternative<HelperEvent::HelperReady>(event.value))
            return QStringLiteral("ready");
        if (std::holds_alternative<HelperEvent::HelperCrashed>(event.value))
            return QStringLiteral("crashed");
        const auto &server = std::get<HelperEvent::Server>(event.value).event;
        if (const auto *log = std::get_if<ServerEvent::Log>(&server.value))
            return log->message;
        if (const auto *unknown = std::get_if<ServerEvent::Unknown>(&server.value))
            return QStringLiteral("unknown ") + unknown->type;
        return QStringLiteral("other");
    }

    ScriptedEngine engine;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<HelperProcess> process;
    std::shared_ptr<HelperClient> client;
    QStringList events;
    bool ended = false;
};

QString log(const QString &message) {
    return QStringLiteral(R"(send {"event":"log","data":{"level":"info","message":"%1"}})").arg(message);
}

const QString previewTrack = QStringLiteral(
    R"({"id":"p#0","title":"T","artist":"A","durationSec":3,"artwork":{"kind":"none"},"onDisk":"present"})");

Request tracksOf(const QString &id) {
    return Request::getPlaylistTracks(PlaylistSourceId::apple, id);
}

} // namespace

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

    void junkIsLoggedAndTheNextLineIsHandled_data() {
        QTest::addColumn<QString>("junk");
        QTest::addColumn<QString>("logged");
        QTest::newRow("no JSON") << "no json"
                                 << "no json";
        QTest::newRow("not an object") << "[1,2]"
                                       << "[1,2]";
        QTest::newRow("neither reply nor event") << R"({"a":1})"
                                                 << R"({"a":1})";
        QTest::newRow("half an object") << R"({"id":"r1","ok")"
                                        << R"({"id":"r1","ok")";
        QTest::newRow("a reply nobody waits for") << R"({"id":"r99","ok":true})"
                                                  << R"({"id":"r99","ok":true})";
        QTest::newRow("a known event of another shape") << R"({"event":"step","data":{}})"
                                                        << R"({"event":"step","data":{}})";
        QTest::newRow("not UTF-8") << R"({"a":"\xff\xfe"})"
                                   << "<non-utf8>";
    }
    void junkIsLoggedAndTheNextLineIsHandled() {
        QFETCH(QString, junk);
        QFETCH(QString, logged);
        const LogCapture capture;
        Connected c({"raw "_s + junk + R"(\n)"_s, log("after"_s), "drain"_s});
        QVERIFY(c.start());
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "after"_s}));
        QCOMPARE(capture.messages("client"_s), QStringList{"dropping undecodable line: "_s + logged});
        QCOMPARE(capture.entries().constLast().type, QtCriticalMsg);
    }

    void anUnknownEventReachesTheStream() {
        Connected c({R"(send {"event":"comet","data":{"a":1}})"_s, "drain"_s});
        QVERIFY(c.start());
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "unknown comet"_s}));
    }

    void aLineOfTenMegabytesAndLinesThatEndInCarriageReturnsAreLines() {
        const LogCapture capture;
        Connected c({R"(raw {"event":"log","data":{"level":"info","message":"long"},"pad":")"_s, "fill 10000000"_s,
                     R"(raw "}\r\n)"_s, R"(raw {"event":"log","data":{"level":"info","message":"short"}}\r\n\r\n)"_s,
                     "drain"_s});
        QVERIFY(c.start());
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "long"_s, "short"_s}));
        QVERIFY(capture.messages("client"_s).isEmpty());
    }

    void aBurstOfEventsArrivesWholeAndInOrder() {
        constexpr int burst = 300000;
        Connected c(
            {R"(flood 300000 {"event":"log","data":{"level":"info","message":"%i%"}})"_s, log("last"_s), "drain"_s});
        QVERIFY(c.start());
        QTRY_VERIFY_WITH_TIMEOUT(c.events.size() == burst + 2, 60000);
        for (int i = 0; i < burst; ++i)
            QCOMPARE(c.events.at(i + 1), QString::number(i));
        QCOMPARE(c.events.constLast(), "last"_s);
    }

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
        QVERIFY(outcomeOf(c.client->send(Request::testProxy())).failedWith(HelperError::helperUnavailable()));
        QVERIFY(c.start());
        QCOMPARE(c.engine.launches(), 1);
    }

    void whatTheEngineSaysLastIsHeard() {
        Connected c(
            {R"(flood 20000 {"event":"log","data":{"level":"info","message":"%i%"}})"_s, log("last"_s), "exit 0"_s});
        QVERIFY(c.start());
        QTRY_VERIFY_WITH_TIMEOUT(c.ended, 30000);
        QCOMPARE(c.events.size(), 20002);
        QCOMPARE(c.events.constLast(), "last"_s);
    }

    void aLastLineWithoutALineFeedIsNoLine() {
        Connected c({log("whole"_s), R"(raw {"event":"log","data":{"level":"info","message":"half"}})"_s, "exit 0"_s});
        QVERIFY(c.start());
        QTRY_VERIFY(c.ended);
        QCOMPARE(c.events, (QStringList{"ready"_s, "whole"_s}));
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
    }

    void halfALineBeforeACrashDoesNotJoinTheFirstLineAfterIt() {
        const LogCapture capture;
        Connected c({"launch"_s, R"(raw {"event":"log","data":)"_s, "exit 1"_s, "launch"_s, log("whole"_s), "drain"_s});
        QVERIFY(c.start());
        QVERIFY(c.advanceWhenAwaited(250ms));
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "crashed"_s, "ready"_s, "whole"_s}));
        QVERIFY(capture.messages("client"_s, "dropping"_s).isEmpty());
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

#include "ConnectedClient.h"

#include "Platform/ProcessSignals.h"
#include "Support/LogCapture.h"

using namespace zelk;
using namespace std::chrono_literals;

class TestHelperClientLines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }
    /// What was cancelled with the objects of a test ends on the next turn.
    void cleanup() { QCoreApplication::processEvents(); }

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

    void halfALineBeforeACrashDoesNotJoinTheFirstLineAfterIt() {
        const LogCapture capture;
        Connected c({"launch"_s, R"(raw {"event":"log","data":)"_s, "exit 1"_s, "launch"_s, log("whole"_s), "drain"_s});
        QVERIFY(c.start());
        QVERIFY(c.advanceWhenAwaited(250ms));
        QTRY_COMPARE(c.events, (QStringList{"ready"_s, "crashed"_s, "ready"_s, "whole"_s}));
        QVERIFY(capture.messages("client"_s, "dropping"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestHelperClientLines)
#include "tst_helperclient_lines.moc"

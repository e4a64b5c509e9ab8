#include "SupervisedChild.h"

#include "Platform/ProcessSignals.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Transport/HelperError.h"
#include "Transport/HelperProcess.h"

#include <QCoroFuture>
#include <QTest>

#include <csignal>

#include <unistd.h>

using namespace zelk;
using namespace std::chrono_literals;

namespace {

using Termination = HelperProcess::Termination;

} // namespace

class TestHelperProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }

    void whatItSaysArrivesAndWhatIsWrittenReachesIt() {
        Supervised child({QStringLiteral("send hello"), QStringLiteral("read 2"), QStringLiteral("send bye"),
                          QStringLiteral("exit 0")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.output, "hello\n");
        QVERIFY(child.write("one\n"));
        QVERIFY(child.write("two\n"));
        QTRY_COMPARE(child.output, "hello\nbye\n");
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.engine.lines(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    }

    void anExitIsClassifiedByItsReasonAndStatus_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<Termination>("expected");
        QTest::newRow("exit 0 is clean") << QStringLiteral("exit 0") << Termination::clean();
        QTest::newRow("exit 1 is a crash")
            << QStringLiteral("exit 1") << Termination::crash(1, QStringLiteral("exit 1"));
        QTest::newRow("exit 255 is a crash")
            << QStringLiteral("exit 255") << Termination::crash(255, QStringLiteral("exit 255"));
        QTest::newRow("signal 9 is a crash")
            << QStringLiteral("signal 9") << Termination::crash(9, QStringLiteral("signal 9"));
        QTest::newRow("signal 15 is a crash")
            << QStringLiteral("signal 15") << Termination::crash(15, QStringLiteral("signal 15"));
        QTest::newRow("signal 13 is a crash")
            << QStringLiteral("signal 13") << Termination::crash(13, QStringLiteral("signal 13"));
    }
    void anExitIsClassifiedByItsReasonAndStatus() {
        QFETCH(QString, command);
        QFETCH(Termination, expected);
        Supervised child({command});
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended(), QList{expected});
        QTRY_VERIFY(child.streamEnded);
    }

    void outputWithoutALastLineFeedReachesTheStreamAndTheStreamEnds() {
        Supervised child({QStringLiteral("raw half a line"), QStringLiteral("exit 3")});
        QVERIFY(child.start());
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.output, "half a line");
    }

    void theChildsEndWhileThisObjectGoesDisturbsNothing() {
        // The word of the end follows that of its output; what goes in between meets it on its way.
        for (int time = 0; time < 100; ++time) {
            Supervised child({QStringLiteral("exit 0")});
            QVERIFY(child.start());
            QTRY_VERIFY_WITH_TIMEOUT(child.streamEnded, 5000);
        }
    }

    void whatThePipeHoldsComesBeforeTheWordOfTheEnd() {
        // Two hundred thousand bytes are more than one read, and the child is long gone when they are read.
        Supervised child({QStringLiteral("fill 200000"), QStringLiteral("exit 0")});
        QVERIFY(child.start());
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.output.size(), 200000);
    }

    void aGrandchildThatHoldsThePipesDelaysNothing() {
        Supervised child({QStringLiteral("orphan"), QStringLiteral("send last words"), QStringLiteral("exit 0")});
        // The grandchild stays for longer than this test waits for anything.
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended(), QList{Termination::clean()});
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.output, "last words\n");
    }

    void aProgramThatCannotBeLaunchedIsUnavailable_data() {
        QTest::addColumn<QString>("program");
        QTest::newRow("missing") << QStringLiteral("/nonexistent/zelk");
        QTest::newRow("a folder") << QStringLiteral("/");
        QTest::newRow("not a program") << QStringLiteral("plain");
    }
    void aProgramThatCannotBeLaunchedIsUnavailable() {
        QFETCH(QString, program);
        QTemporaryDir folder;
        if (program == QStringLiteral("plain")) {
            program = folder.filePath(program);
            QFile file(program);
            QVERIFY(file.open(QFile::WriteOnly));
            file.write("no program\n");
            file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        }
        const LogCapture log;
        HelperProcess process(program, {}, std::make_shared<BootClock>());
        const auto outcome = outcomeOf(process.start({}));
        QVERIFY(outcome.failedWith(HelperError::helperUnavailable()));
        const auto lines = log.messages(QStringLiteral("helper"), QStringLiteral("helper failed to launch: "));
        QCOMPARE(lines.size(), 1);
        QVERIFY(outcomeOf(process.write("x")).failedWith(HelperError::helperUnavailable()));
    }

    void aFailedLaunchLeavesItReadyForAnother() {
        QTemporaryDir folder;
        const QString program = folder.filePath(QStringLiteral("engine"));
        HelperProcess process(program, {}, std::make_shared<BootClock>());
        QVERIFY(!outcomeOf(process.start({})).succeeded());
        QVERIFY(QFile::link(QStringLiteral("/bin/true"), program));
        QVERIFY(outcomeOf(process.start({})).succeeded());
    }

    void aWriteWithoutAChildIsUnavailable() {
        Supervised child({QStringLiteral("exit 0")});
        QVERIFY(outcomeOf(child.process->write("x")).failedWith(HelperError::helperUnavailable()));
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended().size(), 1);
        QVERIFY(outcomeOf(child.process->write("x")).failedWith(HelperError::helperUnavailable()));
    }

    void aWriteThatTheChildsEndCutsOffIsACrash() {
        // More than any pipe holds, so that the write is under way when the child goes.
        Supervised child({QStringLiteral("sleep 50"), QStringLiteral("exit 1")});
        QVERIFY(child.start());
        QVERIFY(outcomeOf(child.process->write(QByteArray(4'000'000, 'x'))).failedWith(HelperError::helperCrashed()));
        QTRY_COMPARE(child.ended(), QList{Termination::crash(1, QStringLiteral("exit 1"))});
    }

    void linesOfManyWritersAreWrittenWholeAndInTheOrderOfTheirCalls() {
        Supervised child({QStringLiteral("drain")});
        QVERIFY(child.start());
        QStringList expected;
        std::vector<std::shared_ptr<Outcome<void>>> writes;
        for (int i = 0; i < 50; ++i) {
            const QString line = QString::number(i) + QString(20000, u'x');
            expected.append(line);
            writes.push_back(observe(this, child.process->write(line.toUtf8() + '\n')));
        }
        for (const auto &write : writes)
            QTRY_VERIFY(write->succeeded());
        QTRY_COMPARE(child.engine.lines(), expected);
    }

    void aStoppedEngineHoldsBackOnlyItsOwnWrites() {
        Supervised child({QStringLiteral("send up"), QStringLiteral("stall")});
        QVERIFY(child.start());
        const auto blocked = observe(this, child.process->write(QByteArray(10'000'000, 'x')));
        QTRY_COMPARE(child.output, "up\n");
        QVERIFY(!blocked->isOver());
        // The supervisor itself still answers.
        QVERIFY(outcomeOf(child.process->nextBackoffDelay()).succeeded());
        // And its release ends the write.
        child.process.reset();
        QTRY_VERIFY(blocked->isOver());
        QVERIFY(!blocked->succeeded());
    }

    void theReleaseLeavesTheChildAloneAndEndsItsInput() {
        Supervised child({QStringLiteral("send up"), QStringLiteral("drain"), QStringLiteral("sleep 100"),
                          QStringLiteral("exit 0")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.output, "up\n");
        child.process.reset();
        QTRY_VERIFY(child.engine.log().contains(QStringLiteral("eof")));
    }

    void terminateAsksAndKillEnds() {
        Supervised child({QStringLiteral("send up"), QStringLiteral("stall")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.output, "up\n");
        QVERIFY(outcomeOf(child.process->terminate()).succeeded());
        QTRY_COMPARE(child.ended(), QList{Termination::crash(SIGTERM, QStringLiteral("signal 15"))});

        Supervised other({QStringLiteral("send up"), QStringLiteral("stall")});
        QVERIFY(other.start());
        QTRY_COMPARE(other.output, "up\n");
        QVERIFY(outcomeOf(other.process->kill()).succeeded());
        QTRY_COMPARE(other.ended(), QList{Termination::crash(SIGKILL, QStringLiteral("signal 9"))});
        // Without a child both do nothing.
        QVERIFY(outcomeOf(other.process->terminate()).succeeded());
        QVERIFY(outcomeOf(other.process->kill()).succeeded());
    }

    void standardErrorGoesToTheLogPieceByPieceAndNowhereElse() {
        const LogCapture log;
        Supervised child({QStringLiteral("error one\\n\\ntwo"), QStringLiteral("sleep 50"),
                          QStringLiteral("error bad \\xff byte"), QStringLiteral("sleep 50"),
                          QStringLiteral("error three"), QStringLiteral("exit 0")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended().size(), 1);
        QCOMPARE(log.messages(QStringLiteral("helper"), QStringLiteral("helper stderr: ")),
                 (QStringList{QStringLiteral("helper stderr: one"), QStringLiteral("helper stderr: two"),
                              QStringLiteral("helper stderr: three")}));
        QVERIFY(child.output.isEmpty());
        for (const auto &entry : log.entries())
            QVERIFY(!entry.message.startsWith(QStringLiteral("helper stderr")) || entry.type == QtDebugMsg);
    }

    void launchAndEndAreLogged() {
        const LogCapture log;
        Supervised child({QStringLiteral("exit 4")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended().size(), 1);
        QCOMPARE(log.messages(QStringLiteral("helper"), QStringLiteral("helper launched (pid ")).size(), 1);
        QCOMPARE(log.messages(QStringLiteral("helper"), QStringLiteral("helper terminated: crash")).size(), 1);
        QCOMPARE(log.levels(QStringLiteral("helper ")), QSet{QtInfoMsg});
    }

    void oneObjectServesManyChildrenOneAfterTheOther() {
        Supervised child({QStringLiteral("launch"), QStringLiteral("send first"), QStringLiteral("exit 1"),
                          QStringLiteral("launch"), QStringLiteral("send second"), QStringLiteral("exit 0")});
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended().size(), 1);
        QTRY_VERIFY(child.streamEnded);
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended(), (QList{Termination::crash(1, QStringLiteral("exit 1")), Termination::clean()}));
        QTRY_COMPARE(child.output, "first\nsecond\n");
    }

    void ourEndsOfItsPipesStayWithUs() {
        // A second child must not hold the first one's input open.
        Supervised first({QStringLiteral("send up"), QStringLiteral("drain")});
        QVERIFY(first.start());
        Supervised second({QStringLiteral("send up"), QStringLiteral("stall")});
        QVERIFY(second.start());
        QTRY_COMPARE(second.output, "up\n");
        first.process.reset();
        QTRY_VERIFY(first.engine.log().contains(QStringLiteral("eof")));
    }

    // The policy of the crash loop, on a clock that stands until it is moved.

    void theSixthCrashInsideTenSecondsGivesUpAndTheFifthDoesNot() {
        const auto clock = std::make_shared<ManualClock>();
        HelperProcess process(QStringLiteral("/nonexistent"), {}, clock);
        for (int crash = 1; crash <= 5; ++crash) {
            QVERIFY(outcomeOf(process.registerCrashAndShouldRestart()).value.value());
            clock->advance(2s);
        }
        const LogCapture log;
        QVERIFY(!outcomeOf(process.registerCrashAndShouldRestart()).value.value());
        QCOMPARE(log.messages(QStringLiteral("helper")),
                 QStringList{QStringLiteral("helper crashed 6 times in 10s; giving up")});
    }

    void aCrashExactlyTenSecondsOldStillCountsAndAnOlderOneDoesNot() {
        for (const auto &[last, goesOn] :
             {std::pair(Clock::Duration(0ns), false), std::pair(Clock::Duration(1ns), true)}) {
            const auto clock = std::make_shared<ManualClock>();
            HelperProcess process(QStringLiteral("/nonexistent"), {}, clock);
            for (int crash = 0; crash < 5; ++crash) {
                QVERIFY(outcomeOf(process.registerCrashAndShouldRestart()).value.value());
                clock->advance(2s);
            }
            clock->advance(last);
            QCOMPARE(outcomeOf(process.registerCrashAndShouldRestart()).value.value(), goesOn);
        }
    }

    void crashesElevenSecondsApartNeverReachTheLimitAndTheDelayGrowsToFourSeconds() {
        const auto clock = std::make_shared<ManualClock>();
        Supervised child({QStringLiteral("exit 1")}, clock);
        QList<double> delays;
        for (int crash = 0; crash < 12; ++crash) {
            QVERIFY(child.start());
            QTRY_COMPARE(child.ended().size(), crash + 1);
            clock->advance(11s);
            QVERIFY(outcomeOf(child.process->registerCrashAndShouldRestart()).value.value());
            delays.append(
                std::chrono::duration<double>(outcomeOf(child.process->nextBackoffDelay()).value.value()).count());
        }
        QCOMPARE(delays, (QList{0.25, 0.5, 1.0, 2.0, 4.0, 4.0, 4.0, 4.0, 4.0, 4.0, 4.0, 4.0}));
    }

    void aRunOfThirtySecondsStartsTheDelayAfresh_data() {
        QTest::addColumn<qint64>("runNanoseconds");
        QTest::addColumn<double>("delay");
        QTest::newRow("a moment short of it") << qint64(30'000'000'000 - 1) << 1.0;
        QTest::newRow("exactly") << qint64(30'000'000'000) << 0.25;
        QTest::newRow("longer") << qint64(90'000'000'000) << 0.25;
    }
    void aRunOfThirtySecondsStartsTheDelayAfresh() {
        QFETCH(qint64, runNanoseconds);
        QFETCH(double, delay);
        const auto clock = std::make_shared<ManualClock>();
        Supervised child({QStringLiteral("exit 1")}, clock);
        QVERIFY(outcomeOf(child.process->nextBackoffDelay()).succeeded());
        QVERIFY(outcomeOf(child.process->nextBackoffDelay()).succeeded());
        QVERIFY(child.start());
        QTRY_COMPARE(child.ended().size(), 1);
        clock->advance(std::chrono::nanoseconds(runNanoseconds));
        QVERIFY(outcomeOf(child.process->registerCrashAndShouldRestart()).value.value());
        const auto inSeconds = [&] {
            return std::chrono::duration<double>(outcomeOf(child.process->nextBackoffDelay()).value.value()).count();
        };
        QCOMPARE(inSeconds(), delay);
        QCOMPARE(inSeconds(), delay * 2);
    }
};

QTEST_GUILESS_MAIN(TestHelperProcess)
#include "tst_helperprocess.moc"

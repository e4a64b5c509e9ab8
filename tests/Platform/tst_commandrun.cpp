#include "Platform/CommandRun.h"
#include "Platform/Spawn_linux.h"
#include "Platform/StandIn.h"
#include "Support/Cancelled.h"

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

#include <sys/resource.h>

using namespace zelk;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

class TestCommandRun : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> _folder;

    QString program(const QByteArray &script) const { return writeProgram(_folder->filePath(u"program"_s), script); }

    CommandEnd run(const QByteArray &script, CommandErrors errors = CommandErrors::apart) const {
        return runCommand(program(script), {}, errors, {});
    }

private Q_SLOTS:
    void init() { _folder = std::make_unique<QTemporaryDir>(); }

    void outputAndErrorsAreTakenApart() {
        const auto end = run("echo out; echo err >&2; exit 3");
        QCOMPARE(end.exitStatus, 3);
        QCOMPARE(end.output, "out\n");
        QCOMPARE(end.error, "err\n");
    }

    void outputAndErrorsAreTakenTogetherInTheirOrder() {
        const auto end = run("echo a; echo b >&2; echo c", CommandErrors::withTheOutput);
        QCOMPARE(end.exitStatus, 0);
        QCOMPARE(end.output, "a\nb\nc\n");
        QCOMPARE(end.error, "");
    }

    void argumentsArriveAsTheyAre() {
        const auto path = program("printf '[%s]' \"$@\"");
        const QStringList arguments{u"a b"_s, u"it's \"x\""_s, {}, u"$HOME"_s, u"ü"_s};
        QCOMPARE(runCommand(path, arguments, CommandErrors::apart, {}).output, "[a b][it's \"x\"][][$HOME][ü]");
    }

    void aProgramThatReadsFindsNothing() { QCOMPARE(run("cat; echo end").output, "end\n"); }

    void aSignalIsNoExitStatus() { QCOMPARE(run("kill -9 $$").exitStatus, -1); }

    void moreThanAPipeHoldsIsTakenOnBothSides() {
        const auto end = run("head -c 300000 /dev/zero; head -c 300000 /dev/zero >&2");
        QCOMPARE(end.output.size(), 300000);
        QCOMPARE(end.error.size(), 300000);
    }

    void whoNeverStopsTalkingIsReadAndNotKept() {
        const auto end = run("head -c 5000000 /dev/zero");
        QCOMPARE(end.exitStatus, 0);
        QCOMPARE(end.output.size(), 1 << 20);
    }

    void aGrandchildThatHoldsTheOutputIsNotWaitedFor() {
        const auto end = run("sleep 1000 & echo $!");
        QCOMPARE(end.exitStatus, 0);
        const int grandchild = end.output.trimmed().toInt();
        QVERIFY(grandchild > 0);
        QCOMPARE(::kill(grandchild, SIGKILL), 0); // it lives
    }

    void whatIsNoProgramCanNotBeStarted_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("not there") << u"nothing"_s;
        QTest::newRow("a folder") << u""_s;
        QTest::newRow("not executable") << u"plain"_s;
    }
    void whatIsNoProgramCanNotBeStarted() {
        QFETCH(QString, name);
        QFile plain(_folder->filePath(u"plain"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        const QString path = _folder->filePath(name);
        try {
            runCommand(path, {}, CommandErrors::apart, {});
            QFAIL("it was started");
        } catch (const std::system_error &failure) {
            QVERIFY(QString::fromUtf8(failure.what()).startsWith(path));
        }
    }

    void whoIsNotDoneInTimeIsKilled() {
        const auto path = program("echo $$ >\"$1\"; trap '' TERM; exec sleep 1000");
        const QString pidFile = _folder->filePath(u"pid"_s);
        try {
            runCommand(path, {pidFile}, CommandErrors::apart, {.most = 300ms, .stop = {}});
            QFAIL("it ended");
        } catch (const std::system_error &failure) {
            QVERIFY(failure.code() == std::errc::timed_out);
        }
        const int pid = contentsOf(pidFile).trimmed().toInt();
        if (pid > 0) // a busy machine may not have come to that within the time
            QVERIFY(::kill(pid, 0) != 0);
    }

    void whoIsDoneInTimeIsNot() {
        QCOMPARE(runCommand(program("exit 0"), {}, CommandErrors::apart, {.most = 1h, .stop = {}}).exitStatus, 0);
    }

    void aStopAsksTheProgramToEnd() {
        std::stop_source stop;
        const QString pidFile = _folder->filePath(u"pid"_s);
        const auto path = program("echo $$ >\"$1.new\"; mv \"$1.new\" \"$1\"; exec sleep 1000");
        const std::jthread stopper([&] {
            while (!QFile::exists(pidFile))
                std::this_thread::yield();
            stop.request_stop();
        });
        QVERIFY_THROWS_EXCEPTION(
            Cancelled, runCommand(path, {pidFile}, CommandErrors::apart, {.most = {}, .stop = stop.get_token()}));
        QVERIFY(::kill(contentsOf(pidFile).trimmed().toInt(), 0) != 0);
    }

    void aStopLeavesAProgramAloneThatWillNotEnd() {
        std::stop_source stop;
        const QString pidFile = _folder->filePath(u"pid"_s);
        const auto path = program("trap '' TERM; echo $$ >\"$1.new\"; mv \"$1.new\" \"$1\"; exec sleep 1000");
        const std::jthread stopper([&] {
            while (!QFile::exists(pidFile))
                std::this_thread::yield();
            stop.request_stop();
        });
        QVERIFY_THROWS_EXCEPTION(
            Cancelled, runCommand(path, {pidFile}, CommandErrors::apart, {.most = {}, .stop = stop.get_token()}));
        QCOMPARE(::kill(contentsOf(pidFile).trimmed().toInt(), SIGKILL), 0);
    }

    void afterAStopNothingIsStarted() {
        std::stop_source stop;
        stop.request_stop();
        const QString mark = _folder->filePath(u"mark"_s);
        QVERIFY_THROWS_EXCEPTION(Cancelled, runCommand(program("touch \"$1\""), {mark}, CommandErrors::apart,
                                                       {.most = {}, .stop = stop.get_token()}));
        QVERIFY(!QFile::exists(mark));
    }

    void aProgramWhoseEndNobodyCanTellHasEnded() {
        // The kernel forgets the children of a process that doesn't want to hear of them.
        std::signal(SIGCHLD, SIG_IGN);
        const auto restore = qScopeGuard([] { std::signal(SIGCHLD, SIG_DFL); });
        const auto end = runCommand(program("echo out"), {}, CommandErrors::apart, {.most = 10s, .stop = {}});
        QCOMPARE(end.exitStatus, -1);
        QCOMPARE(end.output, "out\n");
    }

    void nothingIsStartedThatCouldNotBeStopped() {
        rlimit before{};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
        const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
        const auto path = program("exit 0");
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
        const auto restore = qScopeGuard([&before] { ::setrlimit(RLIMIT_NOFILE, &before); });
        try {
            runCommand(path, {}, CommandErrors::apart, {});
            QFAIL("it was started");
        } catch (const std::system_error &failure) {
            QVERIFY2(QByteArray(failure.what()).startsWith("eventfd"), failure.what());
        }
    }

    void whatCouldNotBeStartedLeavesNothingBehind() {
        QVERIFY_THROWS_EXCEPTION(std::system_error,
                                 spawn::start(program("exit 0"), {}, {.input = 0, .output = 1, .error = -1}));
    }

    void textIsTrimmedAndMustBeText_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<std::optional<QString>>("text");
        QTest::newRow("plain") << QByteArray("a b") << std::optional(u"a b"_s);
        QTest::newRow("trimmed") << QByteArray(" \n\ta\r\n\n") << std::optional(u"a"_s);
        QTest::newRow("empty") << QByteArray() << std::optional(QString());
        QTest::newRow("umlaut") << QByteArray("ü") << std::optional(u"ü"_s);
        QTest::newRow("no text") << QByteArray("a\xff") << std::optional<QString>();
        QTest::newRow("cut off") << QByteArray("a\xc3") << std::optional<QString>();
    }
    void textIsTrimmedAndMustBeText() {
        QFETCH(QByteArray, bytes);
        QFETCH(std::optional<QString>, text);
        QCOMPARE(trimmedText(bytes), text);
    }
};

QTEST_GUILESS_MAIN(TestCommandRun)
#include "tst_commandrun.moc"

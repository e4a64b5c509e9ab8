// The built application started while it is running already, on a session bus of the test's own.
#include "ApplicationBench.h"
#include "Platform/PrivateBus.h"

#include <QTest>

#include <csignal>

using namespace zelk;

namespace {

constexpr int longEnough = 30000; // for a start on a crowded machine

const QStringList quietEngine = upToTheList + QStringList{reply(playlists("Late Night"_s)), "drain"_s};

/// A start, and what it has said so far.
class Start : public Application {
public:
    explicit Start(const QStringList &arguments = {}) : Application(quietEngine, arguments) {}
    ~Start() { ::kill(pid_t(process.processId()), SIGCONT); }
    Q_DISABLE_COPY_MOVE(Start)

    bool isUp() const { return engine.lines().size() == 2 && process.state() == QProcess::Running; }
    bool isOver() { return process.waitForFinished(0) || process.state() == QProcess::NotRunning; }
    bool endedWell() {
        return finished(longEnough) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    QString errors() { return _errors += QString::fromUtf8(process.readAllStandardError()); }
    qsizetype timesInFront() { return errors().count("Another start brings the window to the front."_s); }

private:
    QString _errors;
};

} // namespace

class TestApplicationTwice : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    QByteArray _configuration;

private Q_SLOTS:
    void initTestCase() {
        setOnboarded();
        _configuration = qgetenv("XDG_CONFIG_HOME");
        _bus.start();
    }
    void cleanupTestCase() { _bus.stop(); }
    void init() { qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.address().toUtf8()); }
    void cleanup() {
        qputenv("XDG_CONFIG_HOME", _configuration);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void aSecondStartBringsTheFirstToTheFrontAndIsOver() {
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        Start second;
        QVERIFY2(second.endedWell(), qPrintable(second.errors()));
        QTRY_COMPARE_WITH_TIMEOUT(first.timesInFront(), 1, longEnough);
        QCOMPARE(second.engine.launches(), 0);
        QVERIFY(second.errors().contains("zelk is running already; its window has come to the front."_s));
        Start third({"zelk://callback?code=SECRET"_s});
        QVERIFY(third.endedWell());
        QTRY_COMPARE_WITH_TIMEOUT(first.timesInFront(), 2, longEnough);
        QVERIFY(first.isUp());
        QCOMPARE(first.engine.lines(), firstLines);
    }

    void ofTwoThatStartTogetherOneStays() {
        Start one;
        Start other;
        const auto oneStays = [](Start &stays, Start &goes) { return stays.isUp() && goes.isOver(); };
        // On a machine so crowded that the one that stays takes seconds to start, the other says so and starts as well.
        const auto saysWhy = [](Start &each) { return each.isUp() && each.errors().contains("doesn't answer"_s); };
        QTRY_VERIFY_WITH_TIMEOUT(oneStays(one, other) || oneStays(other, one) || saysWhy(one) || saysWhy(other),
                                 longEnough);
        if (!one.isOver() && !other.isOver())
            return;
        Start &gone = one.isOver() ? one : other;
        QVERIFY(gone.endedWell());
        QCOMPARE(gone.engine.launches(), 0);
    }

    void twoConfigurationsRunSideBySide() {
        const QTemporaryDir another;
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(another.path()));
        setOnboarded();
        Start second;
        QTRY_VERIFY_WITH_TIMEOUT(second.isUp(), longEnough);
        Start third;
        QVERIFY(third.endedWell());
        QTRY_COMPARE_WITH_TIMEOUT(second.timesInFront(), 1, longEnough);
        QCOMPARE(first.timesInFront(), 0);
    }

    void aConfigurationReachedByALinkIsTheSame() {
        const QTemporaryDir folder;
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        QVERIFY(QFile::link(QFile::decodeName(_configuration), folder.filePath("link"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath("link"_s)));
        Start second;
        QVERIFY(second.endedWell());
        QTRY_COMPARE_WITH_TIMEOUT(first.timesInFront(), 1, longEnough);
    }

    void withoutASessionBusEachStartRuns_data() {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("none is named") << QByteArray();
        QTest::newRow("the one that is named isn't there") << QByteArray("unix:path=/dev/null/bus");
    }
    void withoutASessionBusEachStartRuns() {
        QFETCH(QByteArray, address);
        if (address.isEmpty())
            qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        else
            qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        const Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        const Start second;
        QTRY_VERIFY_WITH_TIMEOUT(second.isUp(), longEnough);
        QVERIFY(first.isUp());
    }

    void oneThatIsStoppedKeepsNobodyFromStarting() {
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        QCOMPARE(::kill(pid_t(first.process.processId()), SIGSTOP), 0);
        Start second;
        QTRY_VERIFY_WITH_TIMEOUT(second.isUp(), longEnough);
        QVERIFY(second.errors().contains("zelk is running already, but doesn't answer."_s));
        // Once that one has gone, this is the one that comes to the front.
        first.process.kill();
        QVERIFY(first.process.waitForFinished());
        Start third;
        QVERIFY(third.endedWell());
        QTRY_COMPARE_WITH_TIMEOUT(second.timesInFront(), 1, longEnough);
    }

    void afterACrashTheNextStartRuns() {
        {
            Start first;
            QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
            first.process.kill();
            QVERIFY(first.process.waitForFinished());
        }
        const Start second;
        QTRY_VERIFY_WITH_TIMEOUT(second.isUp(), longEnough);
    }

    void aRunThatNobodyWatchesGoesBesideTheWindow() {
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        Start unattended({"--unattended"_s});
        QTRY_COMPARE_WITH_TIMEOUT(unattended.engine.lines().size(), 3, longEnough); // the third asks for the run
        QCOMPARE(first.timesInFront(), 0);
        // Nor does it stand in the way of a window.
        first.process.kill();
        QVERIFY(first.process.waitForFinished());
        const Start second;
        QTRY_VERIFY_WITH_TIMEOUT(second.isUp(), longEnough);
        QCOMPARE(unattended.process.state(), QProcess::Running);
    }
};

QTEST_GUILESS_MAIN(TestApplicationTwice)
#include "tst_application_twice.moc"

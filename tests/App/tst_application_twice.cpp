// The built application started while it is running already, on a session bus of the test's own.
#include "ApplicationBench.h"
#include "Platform/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QRegularExpression>
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
    ~Start() { goOn(); }
    Q_DISABLE_COPY_MOVE(Start)

    bool hold() { return ::kill(pid_t(process.processId()), SIGSTOP) == 0; }
    bool goOn() { return ::kill(pid_t(process.processId()), SIGCONT) == 0; }

    bool isUp() const { return engine.lines().size() == 2 && process.state() == QProcess::Running; }
    bool endedWell() {
        return finished(longEnough) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    QString errors() { return _errors += QString::fromUtf8(process.readAllStandardError()); }
    qsizetype timesInFront() { return errors().count("Another start brings the window to the front."_s); }

private:
    QString _errors;
};

/// What is said on a bus, as far as it is about bringing a window to the front.
class Overheard {
public:
    explicit Overheard(const PrivateBus &bus) {
        _monitor.start("dbus-monitor"_s, {"--address"_s, bus.address(), "type='method_call',member='Activate'"_s,
                                          "type='method_return'"_s});
    }
    ~Overheard() {
        _monitor.kill();
        _monitor.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Overheard)

    /// From its first words on it misses nothing.
    bool listens() { return !said().isEmpty(); }
    bool aCall() { return said().contains("member=Activate"_s); }
    bool anAnswer() {
        const auto call =
            QRegularExpression("method call .*sender=(\\S+) .*serial=(\\d+) .*member=Activate"_s).match(said());
        return call.hasMatch() &&
               said().contains(QRegularExpression("method return .*destination=%1 .*reply_serial=%2\\b"_s.arg(
                   QRegularExpression::escape(call.captured(1)), call.captured(2))));
    }

private:
    QString said() { return _said += QString::fromUtf8(_monitor.readAllStandardOutput()); }

    QProcess _monitor;
    QString _said;
};

} // namespace

class TestApplicationTwice : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    QByteArray _configuration;

    /// Whether somebody has the place of a window.
    bool isTaken() const {
        const QString watcher = "watcher"_s;
        const QStringList names = _bus.connection(watcher).interface()->registeredServiceNames();
        QDBusConnection::disconnectFromBus(watcher);
        return !names.filter(".Instance_"_s).isEmpty();
    }

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

    // However long the machine takes for the first one's start: while that goes on, the second has no time to lose.
    void ofTwoThatStartTogetherOneStays() {
        Overheard bus(_bus);
        QTRY_VERIFY_WITH_TIMEOUT(bus.listens(), longEnough);
        QTRY_VERIFY_WITH_TIMEOUT(!isTaken(), longEnough); // by one that has just been killed
        Start first;
        QTRY_VERIFY_WITH_TIMEOUT(isTaken(), longEnough);
        QVERIFY(first.hold());
        Start second;
        QTRY_VERIFY_WITH_TIMEOUT(bus.aCall(), longEnough);
        QVERIFY(second.hold());
        QVERIFY(!bus.anAnswer());
        QVERIFY(first.goOn());
        QTRY_VERIFY_WITH_TIMEOUT(bus.anAnswer(), longEnough);
        QVERIFY(second.goOn());
        QVERIFY2(second.endedWell(), qPrintable(second.errors()));
        QCOMPARE(second.engine.launches(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), longEnough);
        QCOMPARE(first.timesInFront(), 1);
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
        QVERIFY(first.hold());
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

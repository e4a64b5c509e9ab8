// Two engines on one configuration: the application's and one at a terminal, or two at terminals.
#include "engine/TerminalChild.h"

#include "Library/AudioReader.h"
#include "Store/Database.h"
#include "Store/RunLock.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QTest>
#include <QThread>

#include <csignal>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;
using zelk::engine::RunLock;

namespace {

QString lockFile(const EngineHome &home) {
    return home.path(u".local/share/zelk/sync.lock"_s);
}

void fillWithLargeFiles(const EngineHome &home, int files) {
    QStringList rows;
    for (int i = 0; i < files; ++i) {
        home.addWav(u"Ann - Big %1.wav"_s.arg(i), 2'000 + 60 * i);
        rows += u"Big %1|Ann|%2"_s.arg(i).arg(2'000 + 60 * i);
    }
    home.addList(u"L.csv"_s, rows);
}

/// An engine in the middle of writing, and made to stay there.
void stopInTheMiddle(EngineChild &engine) {
    const QJsonObject params{{u"selection"_s, engine.selectAll()}, {u"options"_s, QJsonObject{{u"concurrency"_s, 1}}}};
    QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
    QVERIFY(!engine.until(u"downloadProgress"_s).isEmpty());
    ::kill(static_cast<pid_t>(engine.process().processId()), SIGSTOP);
}

} // namespace

class EngineLock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLockIsOneProcessesAndCountsWithinIt() {
        const QTemporaryDir folder;
        // Locks of their own stand for processes: what is locked is the open file.
        RunLock ours(folder.filePath(u"lock"_s));
        RunLock theirs(folder.filePath(u"lock"_s));
        RunLock::Hold first = ours.take();
        RunLock::Hold second = ours.take();
        QVERIFY(first && second);
        QVERIFY(!theirs.take());
        QCOMPARE(theirs.holder(), static_cast<qint64>(::getpid()));
        first.reset();
        QVERIFY(!theirs.take());
        second.reset();
        QVERIFY(theirs.take());
        QVERIFY(ours.take()); // theirs was dropped at once
    }

    void whatAChildOfAKilledEngineHoldsForAMomentIsWaitedFor() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"lock"_s);
        QProcess gone;
        gone.start(u"true"_s, {});
        QVERIFY(gone.waitForStarted());
        const QByteArray process = QByteArray::number(gone.processId());
        QVERIFY(gone.waitForFinished());
        auto inherited = std::make_unique<RunLock>(path);
        RunLock::Hold held = inherited->take();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(process);
        file.close();
        RunLock ours(path);
        std::thread child([&] {
            QThread::msleep(100);
            held.reset();
        });
        const RunLock::Hold taken = ours.take();
        child.join();
        QVERIFY(taken);
    }

    void whereNoLockFileCanBeMadeWorkGoesOn() {
        const QTemporaryDir folder;
        RunLock lock(folder.filePath(u"nowhere/lock"_s));
        QVERIFY(lock.take());
        QCOMPARE(lock.holder(), 0);
    }

    void whileTheApplicationSyncsATerminalIsRefusedAndListsAllTheSame() {
        const EngineHome home;
        fillWithLargeFiles(home, 3);
        EngineChild application(home);
        stopInTheMiddle(application);
        const Ended refused = runZelk(home, {u"sync"_s});
        const Ended listed = runZelk(home, {u"list"_s});
        const Ended examined = runZelk(home, {u"doctor"_s});
        ::kill(static_cast<pid_t>(application.process().processId()), SIGCONT);
        QCOMPARE(refused.status, 1);
        QCOMPARE(refused.error,
                 u"zelk: Another zelk (process %1) is syncing or carrying out a decision. Wait until it has finished,"
                 " and try again.\n"_s.arg(application.process().processId()));
        QCOMPARE(refused.out, QString());
        QCOMPARE(listed.status, 0);
        QVERIFY(listed.out.contains("  L\n"_L1));
        QCOMPARE(examined.status, 0);
        QVERIFY(!application.until(u"syncDone"_s).isEmpty());
        QCOMPARE(home.outputFiles().size(), 3);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
    }

    void whileATerminalSyncsTheApplicationIsRefusedAndMayTryAgain() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild application(home);
        const QJsonObject params{{u"selection"_s, application.selectAll()}};
        RunLock terminals(lockFile(home));
        RunLock::Hold held = terminals.take();
        const QJsonObject error = application.call(u"startSync"_s, params).value("error"_L1).toObject();
        QCOMPARE(error.value("code"_L1).toString(), u"sync_in_progress"_s);
        QVERIFY(error.value("message"_L1).toString().startsWith("Another zelk (process "_L1));
        QVERIFY(application.call(u"runDoctor"_s).value("ok"_L1).toBool());
        held.reset();
        QVERIFY(application.call(u"startSync"_s, params).value("ok"_L1).toBool());
        QVERIFY(!application.until(u"syncDone"_s).isEmpty());
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
    }

    void theNextRunMayBeginAsSoonAsTheSummaryIsThere() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild application(home);
        RunLock terminals(lockFile(home));
        for (int i = 0; i < 20; ++i) {
            QVERIFY(!application.syncAll().isEmpty());
            QVERIFY(terminals.take());
        }
    }

    void aKilledEngineStandsInNobodysWay() {
        const EngineHome home;
        fillWithLargeFiles(home, 1);
        EngineChild application(home);
        stopInTheMiddle(application);
        ::kill(static_cast<pid_t>(application.process().processId()), SIGKILL);
        QVERIFY(application.process().waitForFinished());
        QVERIFY(QFileInfo::exists(lockFile(home)));
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Big 0.wav"_s});
        QCOMPARE(zelk::engine::readAudio(home.output(u"/Ann - Big 0.wav"_s)).durationSec, 2'000);
    }

    void ofTwoSyncsAtOnceNoneDoesTheOthersWork() {
        const EngineHome home;
        QStringList rows;
        QStringList expected;
        for (int i = 0; i < 40; ++i) {
            const QString title = u"Song %1"_s.arg(i, 2, 10, QChar(u'0'));
            home.addAudio(title + u".flac"_s, u"Ann"_s, title);
            rows += title + u"|Ann|2"_s;
            expected += u"Ann - "_s + title + u".flac"_s;
        }
        home.addList(u"L.csv"_s, rows);
        QProcess processes[3];
        for (QProcess &process : processes) {
            process.setProcessEnvironment(environmentIn(home));
            process.start(QStringLiteral(ENGINE_PROGRAM), {u"sync"_s});
        }
        int done = 0;
        for (QProcess &process : processes) {
            QVERIFY(process.waitForFinished(60'000));
            const QByteArray error = process.readAllStandardError();
            QVERIFY2(process.exitCode() == 0 ? error.isEmpty() : error.startsWith("zelk: Another zelk"),
                     error.constData());
            done += process.exitCode() == 0 ? 1 : 0;
            // Whoever came in after another one found its files.
            const QByteArray out = process.readAllStandardOutput();
            QVERIFY2(process.exitCode() != 0 || out.contains("40 done, 0 on disk") ||
                         out.contains("0 done, 40 on disk"),
                     out.right(200).constData());
        }
        QVERIFY(done >= 1);
        QCOMPARE(home.outputFiles(), expected);
    }

    void twoEnginesMayRememberAtTheSameTime() {
        const QTemporaryDir folder;
        const auto silent = [](const QString &) {};
        zelk::engine::Database ours(folder.filePath(u"engine.db"_s), silent);
        zelk::engine::Database theirs(folder.filePath(u"engine.db"_s), silent);
        std::thread other([&theirs] {
            for (int i = 0; i < 300; ++i) {
                theirs.recordDecision(u"row %1"_s.arg(i), {});
            }
        });
        QString failure;
        try {
            for (int i = 0; i < 300; ++i) {
                ours.followRows({{u"spelling %1"_s.arg(i), u"row"_s}}, zelk::engine::Database::Remember::All);
            }
        } catch (const zelk::engine::DatabaseError &error) {
            failure = QString::fromUtf8(error.what());
        }
        other.join();
        QCOMPARE(failure, QString());
    }

    void aDecisionWaitsForNoOtherEngineAndIsNotLost() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild application(home);
        const QJsonValue track = dataOf(named(application.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        const QJsonObject decision{{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}};
        RunLock others(lockFile(home));
        RunLock::Hold held = others.take();
        application.tell(u"reviewDecision"_s, decision);
        const QJsonObject refused = dataOf(application.until(u"error"_s));
        QCOMPARE(refused.value("scope"_L1).toString(), u"review"_s);
        QVERIFY(refused.value("message"_L1).toString().startsWith("Another zelk"_L1));
        const Ended typed = runZelk(home, {u"review"_s}, "a\n");
        QCOMPARE(typed.status, 1);
        QVERIFY(typed.error.startsWith("zelk: Another zelk"_L1));
        QVERIFY(typed.out.contains("1 track still waits for your decision."_L1));
        QVERIFY(home.outputFiles().isEmpty());
        held.reset();
        application.tell(u"reviewDecision"_s, decision);
        QCOMPARE(dataOf(application.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.mp3"_s});
    }
};

QTEST_GUILESS_MAIN(EngineLock)
#include "tst_enginelock.moc"

// The built application as a process, with the scripted engine as its child: what crosses the pipe, what it prints, and
// how it ends.
#include "ApplicationBench.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

using namespace zelk;

namespace {

QString says(const QString &name, const QString &data) {
    return R"(send {"event":")"_s + name + R"(","correlationId":"r","data":)"_s + data + u'}';
}

QString track(int row, const QString &title) {
    return R"({"id":"p#%1","title":"%2","artist":"Someone","durationSec":200,"artwork":{"kind":"none"}})"_s.arg(row)
        .arg(title);
}

// What stands below would confuse the meta-object compiler inside of the test class.

const QString syncRequest =
    R"("method":"startSync","params":{"selection":[{"source":"spotify","id":"p","name":"Late Night"}]}})"_s;

QStringList wholeRun() {
    return upToTheList +
           QStringList{reply(playlists("Late Night"_s)),
                       "expect startSync"_s,
                       R"(send {"id":"%id%","ok":true})"_s,
                       says("syncStarted"_s, R"({"runId":"r","totalPlaylists":1})"_s),
                       says("playlistStarted"_s, R"({"playlistId":"p","index":0,"name":"Late Night","tracks":[)"_s +
                                                     track(0, "First"_s) + u',' + track(1, "Second"_s) + "]}"_s),
                       says("trackStarted"_s, R"({"trackId":"p#0","index":0,"label":"First"})"_s),
                       says("downloadProgress"_s, R"({"trackId":"p#0","percent":50})"_s),
                       says("trackFinished"_s, R"({"trackId":"p#0","status":"ok","kind":"downloaded"})"_s),
                       says("trackFinished"_s, R"({"trackId":"p#1","status":"failed","detail":"No match"})"_s),
                       says("playlistFinished"_s, R"({"playlistId":"p","status":"failed"})"_s),
                       says("syncDone"_s,
                            R"({"runId":"r","summary":{"present":0,"ok":1,"flagged":0,"failed":1,"skipped":0,)"
                            R"("upgraded":0,"removed":0}})"_s),
                       "drain"_s};
}

/// For somebody new: the setup wants the configuration beside the window.
QStringList upToTheSecondList() {
    return {"expect getConfig"_s,     reply(config), "expect getConfig"_s, reply(config),
            "expect listPlaylists"_s, "drain"_s};
}

/// The name of its playlist comes back in the request to sync: ten megabytes that this engine never reads.
QStringList stoppedAfterTheList() {
    return upToTheList +
           QStringList{R"(raw {"id":"%id%","ok":true,"result":{"playlists":[{"id":"p","source":"spotify","name":")"_s,
                       "fill 10000000"_s,
                       R"(raw ","isFolder":false,"artwork":{"kind":"none"}}]}}\n)"_s,
                       "sleep 700"_s,
                       says("error"_s, R"({"message":"Something to quit over."})"_s),
                       "stall"_s};
}

} // namespace

class TestApplication : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { setOnboarded(); }

    void theFirstLinesAskForTheConfigurationAndThePlaylists() {
        Application application(upToTheList + QStringList{reply(playlists("Late Night"_s)), "drain"_s}, {});
        QTRY_COMPARE_WITH_TIMEOUT(application.engine.lines().size(), 2, 20000);
        QCOMPARE(application.engine.lines(), firstLines);
        QCOMPARE(application.process.state(), QProcess::Running);
    }

    void somebodyNewIsLedThroughTheSetupWhichReadsTheConfigurationToo() {
        setOnboarded(false);
        Application application(upToTheSecondList(), {});
        QTRY_COMPARE_WITH_TIMEOUT(application.engine.lines().size(), 3, 20000);
        QCOMPARE(application.engine.lines().filter("getConfig"_s).size(), 2);
    }

    void nobodyIsLedThroughTheSetupInAnUnattendedRun() {
        setOnboarded(false);
        Application application(wholeRun(), {"--unattended"_s});
        QVERIFY(application.finished());
        QCOMPARE(application.engine.lines().filter("getConfig"_s).size(), 1);
    }

    void aRunGoesFromLaunchToSummary() {
        const QTemporaryDir folder;
        const QString picture = folder.filePath("window.png"_s);
        Application application(wholeRun(), {"--unattended"_s, "--screenshot"_s, picture});
        QVERIFY(application.finished());
        const QString output = QString::fromUtf8(application.process.readAllStandardOutput());
        QVERIFY2(application.process.exitStatus() == QProcess::NormalExit && application.process.exitCode() == 0,
                 qPrintable(output + QString::fromUtf8(application.process.readAllStandardError())));
        QVERIFY2(output.contains("Summary: 1 done, 0 on disk, 0 flagged, 1 failed, 0 skipped"_s), qPrintable(output));
        QVERIFY2(output.contains("done      Someone - First"_s) && output.contains("failed    Someone - Second"_s),
                 qPrintable(output));
        QVERIFY(application.engine.lines().constLast().endsWith(syncRequest));
        QVERIFY(QFileInfo(picture).size() > 0);
        QTRY_VERIFY(application.engine.log().contains("eof"_s));
    }

    void anEngineThatDiesAtOnceIsLaunchedSixTimesAndNoMore() {
        // The one place where the policy's delays pass for real: they add up to 7.75 seconds.
        Application application({"exit 3"_s}, {});
        QTRY_COMPARE_WITH_TIMEOUT(application.engine.launches(), 6, 30000);
        QTest::qWait(1000);
        QCOMPARE(application.engine.launches(), 6);
        QCOMPARE(application.process.state(), QProcess::Running);
    }

    void anEngineThatExitsCleanlyIsLaunchedOnce() {
        Application application({"exit 0"_s}, {});
        QTRY_COMPARE_WITH_TIMEOUT(application.engine.launches(), 1, 20000);
        QTest::qWait(1000);
        QCOMPARE(application.engine.launches(), 1);
        QCOMPARE(application.process.state(), QProcess::Running);
    }

    void quittingWaitsForNothingThatTheEngineDoesNotRead() {
        Application application(stoppedAfterTheList(), {"--unattended"_s});
        QTRY_VERIFY_WITH_TIMEOUT(application.process.canReadLine(), 20000);
        QVERIFY(application.finished(15000));
        QCOMPARE(application.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(application.process.exitCode(), 1);
        const QString output = QString::fromUtf8(application.process.readAllStandardOutput());
        QVERIFY(output.contains("Something to quit over."_s));
    }

    void anEngineThatCannotBeStartedIsToldOfAndEndsAnUnattendedRun() {
        const QTemporaryDir folder;
        QFile plain(folder.filePath("engine"_s));
        QVERIFY(plain.open(QFile::WriteOnly));
        plain.write("no program\n");
        plain.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        plain.close();
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ZELK_HELPER_PATH"_s, plain.fileName());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(ZELK_APPLICATION), {"--unattended"_s});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()).trimmed(), "The zelk helper is not available."_s);
    }
};

QTEST_GUILESS_MAIN(TestApplication)
#include "tst_application.moc"

#include "engine/EngineHome.h"
#include "engine/TerminalChild.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QString codeOf(const QJsonObject &reply) {
    return reply.value("error"_L1).toObject().value("code"_L1).toString();
}
QString messageOf(const QJsonObject &reply) {
    return reply.value("error"_L1).toObject().value("message"_L1).toString();
}

QByteArray lineWithRun(const QJsonObject &run) {
    const QJsonObject patch{{u"run"_s, run}};
    const QJsonObject request{
        {u"id"_s, u"q"_s}, {u"method"_s, u"setConfig"_s}, {u"params"_s, QJsonObject{{u"patch"_s, patch}}}};
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

} // namespace

/// The built program as a dialogue of lines, without a run.
class EngineServe : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyMethodThatIsAnsweredIsAnswered_data() {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QString>("outcome"); // "ok" or an error code
        const auto row = [](const char *method, const char *params, const char *outcome) {
            QTest::newRow(method) << u"{\"id\":\"q\",\"method\":\"%1\"%2}"_s.arg(QLatin1StringView(method),
                                                                                 QLatin1StringView(params))
                                  << QString(QLatin1StringView(outcome));
        };
        row("getConfig", "", "ok");
        row("setConfig", R"(,"params":{"patch":{}})", "ok");
        row("storeAccountToken", R"(,"params":{"service":"acoustid","token":"t"})", "ok");
        row("getSpotifyAuthParams", "", "not_implemented");
        row("disconnectAccount", R"(,"params":{"service":"soundcloud"})", "ok");
        row("connectSpotify", "", "not_configured");
        row("listPlaylists", "", "ok");
        row("getPlaylistTracks", R"(,"params":{"source":"apple","id":"apple:0"})", "invalid_params");
        row("startSync", R"(,"params":{"selection":[]})", "invalid_params");
        row("listOrphans", R"(,"params":{"selection":[]})", "ok");
        row("trashOrphans", R"(,"params":{"paths":[]})", "ok");
        row("runDoctor", "", "ok");
        row("doctorFix", R"(,"params":{"checkId":"output-folder"})", "ok");
        row("provisionTools", "", "ok");
        row("testProxy", "", "ok");
        row("proxyInfo", "", "ok");
    }

    void everyMethodThatIsAnsweredIsAnswered() {
        QFETCH(QString, request);
        QFETCH(QString, outcome);
        const EngineHome home;
        EngineChild engine(home);
        engine.send(request.toUtf8());
        QJsonObject line = engine.next();
        while (line.contains("event"_L1)) {
            line = engine.next();
        }
        QCOMPARE(line.value("id"_L1).toString(), u"q"_s);
        QCOMPARE(line.value("ok"_L1).toBool() ? u"ok"_s : codeOf(line), outcome);
        QVERIFY(outcome == "ok"_L1 || !messageOf(line).isEmpty());
    }

    void aMalformedLineIsRefusedByFieldAndEndsNothing_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("code"); // empty: a log event, since there is no id to reply to
        QTest::addColumn<QString>("named");
        const auto run = [](const char *name, double searchCount, double toleranceSec, double searchTimeoutSec,
                            double cooloffHours, const QString &field) {
            QTest::newRow(name) << lineWithRun({{u"searchCount"_s, searchCount},
                                                {u"concurrency"_s, 4},
                                                {u"toleranceSec"_s, toleranceSec},
                                                {u"searchTimeoutSec"_s, searchTimeoutSec},
                                                {u"cooloffHours"_s, cooloffHours}})
                                << u"invalid_params"_s << field;
        };
        QTest::newRow("no JSON") << QByteArray("hello") << QString() << QString();
        QTest::newRow("not UTF-8") << QByteArray("{\"id\":\"q\xff\"}") << QString() << QString();
        QTest::newRow("a list") << QByteArray("[1]") << QString() << QString();
        QTest::newRow("no id") << QByteArray(R"({"method":"getConfig"})") << QString() << u"id"_s;
        QTest::newRow("no method") << QByteArray(R"({"id":"q"})") << u"bad_request"_s << u"method"_s;
        QTest::newRow("unknown") << QByteArray(R"({"id":"q","method":"dance"})") << u"unknown_method"_s << u"dance"_s;
        QTest::newRow("no params") << QByteArray(R"({"id":"q","method":"startSync"})") << u"invalid_params"_s
                                   << u"params"_s;
        QTest::newRow("wrong kind")
            << QByteArray(R"({"id":"q","method":"listOrphans","params":{"selection":[{"source":"tape","id":"x"}]}})")
            << u"invalid_params"_s << u"selection[0].source"_s;
        QTest::newRow("wrong decision")
            << QByteArray(
                   R"({"id":"q","method":"reviewDecision","params":{"trackId":"t","decision":{"kind":"later"}}})")
            << u"invalid_params"_s << u"decision.kind"_s;
        QTest::newRow("no threads")
            << QByteArray(
                   R"({"id":"q","method":"startSync","params":{"selection":[{"source":"apple","id":"x"}],"options":{"concurrency":0}}})")
            << u"invalid_params"_s << u"options.concurrency"_s;
        run("negative tolerance", 5, -1, 30, 24, u"patch.run.toleranceSec"_s);
        run("a day's tolerance and more", 5, 86401, 30, 24, u"patch.run.toleranceSec"_s);
        run("no results", 0, 5, 30, 24, u"patch.run.searchCount"_s);
        run("results beyond 32 bits", 4294967296, 5, 30, 24, u"patch.run.searchCount"_s);
        run("no time", 5, 5, 0, 24, u"patch.run.searchTimeoutSec"_s);
        run("all time", 5, 5, 1e300, 24, u"patch.run.searchTimeoutSec"_s);
        run("a negative rest", 5, 5, 30, -1, u"patch.run.cooloffHours"_s);
        run("a rest for ever", 5, 5, 30, 1e300, u"patch.run.cooloffHours"_s);
        QTest::newRow("a folder with an end in it")
            << QByteArray(R"({"id":"q","method":"setConfig","params":{"patch":{"outputDir":"/tmp/a\u0000b"}}})")
            << u"invalid_params"_s << u"patch.outputDir"_s;
        QTest::newRow("empty folder") << QByteArray(
                                             R"({"id":"q","method":"setConfig","params":{"patch":{"outputDir":" "}}})")
                                      << u"invalid_params"_s << u"patch.outputDir"_s;
        QTest::newRow("empty token")
            << QByteArray(R"({"id":"q","method":"storeAccountToken","params":{"service":"spotify","token":""}})")
            << u"invalid_params"_s << u"token"_s;
        QTest::newRow("tunnel") << QByteArray(
                                       R"({"id":"q","method":"setConfig","params":{"patch":{"proxyEnabled":true}}})")
                                << u"not_implemented"_s << u"proxyEnabled"_s;
        QTest::newRow("unknown check") << QByteArray(R"({"id":"q","method":"doctorFix","params":{"checkId":"teeth"}})")
                                       << u"invalid_params"_s << u"checkId"_s;
        QTest::newRow("not an orphan")
            << QByteArray(R"({"id":"q","method":"trashOrphans","params":{"paths":["/etc/passwd"]}})")
            << u"invalid_params"_s << u"paths[0]"_s;
    }

    void aMalformedLineIsRefusedByFieldAndEndsNothing() {
        QFETCH(QByteArray, line);
        QFETCH(QString, code);
        QFETCH(QString, named);
        const EngineHome home;
        EngineChild engine(home);
        engine.send(line);
        const QJsonObject answer = engine.next();
        if (code.isEmpty()) {
            QCOMPARE(answer.value("event"_L1).toString(), u"log"_s);
            QVERIFY(dataOf(answer).value("message"_L1).toString().contains(named));
        } else {
            QCOMPARE(codeOf(answer), code);
            QVERIFY2(messageOf(answer).contains(named), qPrintable(messageOf(answer)));
        }
        QVERIFY(engine.call(u"getConfig"_s).value("ok"_L1).toBool());
        QCOMPARE(engine.finish(), 0);
    }

    void settingsOutliveTheProcessInAPrivateFile() {
        const EngineHome home;
        {
            EngineChild engine(home);
            QVERIFY(engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, QJsonObject{{u"outputDir"_s, u"~/Out"_s}}}})
                        .value("ok"_L1)
                        .toBool());
            QVERIFY(
                engine
                    .call(u"storeAccountToken"_s,
                          QJsonObject{{u"service"_s, u"spotify"_s}, {u"token"_s, u"hush"_s}, {u"clientId"_s, u"me"_s}})
                    .value("ok"_L1)
                    .toBool());
        }
        EngineChild engine(home);
        const QJsonObject config =
            engine.call(u"getConfig"_s).value("result"_L1).toObject().value("config"_L1).toObject();
        QCOMPARE(config.value("outputDir"_L1).toString(), u"~/Out"_s);
        QCOMPARE(config.value("effectiveSpotifyClientId"_L1).toString(), u"me"_s);
        QVERIFY(config.value("spotifyConnected"_L1).toBool());
        for (const QString &name : {u"engine.json"_s, u"secrets.json"_s}) {
            struct stat status {};
            QCOMPARE(::stat(home.path(u".config/zelk/"_s + name).toUtf8().constData(), &status), 0);
            QCOMPARE(status.st_mode & 0777, 0600u);
        }
        QVERIFY(!home.read(home.path(u".config/zelk/engine.json"_s)).contains("hush"));
    }

    void aBrokenSettingsFileIsSetAsideAndTheDefaultsHold() {
        const EngineHome home;
        const QString file = home.path(u".config/zelk/engine.json"_s);
        home.write(file, "{\"outputDir\": 7, mine");
        EngineChild engine(home);
        const QJsonObject config =
            engine.call(u"getConfig"_s).value("result"_L1).toObject().value("config"_L1).toObject();
        QCOMPARE(config.value("outputDir"_L1).toString(), u"~/Music/DjayImport"_s);
        QCOMPARE(home.read(file + u".broken-1"_s), QByteArray("{\"outputDir\": 7, mine"));
        const QJsonObject log = engine.until(u"log"_s);
        QCOMPARE(dataOf(log).value("level"_L1).toString(), u"warn"_s);
        QVERIFY(dataOf(log).value("message"_L1).toString().contains("engine.json.broken-1"_L1));
    }

    void foldersOfTheEnvironmentAreSearched() {
        const EngineHome home;
        home.write(home.path(u"a/One.csv"_s), "Track Name\nx\n");
        home.write(home.path(u"b/Two.csv"_s), "Track Name\nx\n");
        QProcessEnvironment environment;
        environment.insert(u"ZELK_PLAYLIST_DIRS"_s, home.path(u"a"_s) + u':' + home.path(u"b"_s));
        EngineChild engine(home, environment);
        QCOMPARE(engine.selectAll().size(), 2);
    }

    void aDisconnectedSourceHidesItsPlaylistsUntilItIsConnectedAgain() {
        const EngineHome home;
        home.addList(u"One.csv"_s, {u"a|b|2"_s});
        EngineChild engine(home);
        QCOMPARE(engine.selectAll().size(), 1);
        QVERIFY(engine.call(u"getConfig"_s)
                    .value("result"_L1)
                    .toObject()
                    .value("config"_L1)
                    .toObject()
                    .value("spotifyConnected"_L1)
                    .toBool());
        QVERIFY(engine.call(u"disconnectAccount"_s, QJsonObject{{u"service"_s, u"spotify"_s}}).value("ok"_L1).toBool());
        QCOMPARE(engine.selectAll().size(), 0);
        QVERIFY(engine.call(u"connectSpotify"_s).value("ok"_L1).toBool());
        QCOMPARE(engine.selectAll().size(), 1);
    }

    void aDisconnectedSourceIsNeitherAskedAboutNorCounted() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        QCOMPARE(named(engine.syncAll(), u"needsReview"_s).size(), 1);
        QVERIFY(runZelk(home, {u"review"_s}).out.contains("Slow Burn"_L1));
        QVERIFY(engine.call(u"disconnectAccount"_s, QJsonObject{{u"service"_s, u"spotify"_s}}).value("ok"_L1).toBool());
        QVERIFY(!runZelk(home, {u"review"_s}).out.contains("Slow Burn"_L1));
        for (const auto &value :
             engine.call(u"runDoctor"_s).value("result"_L1).toObject().value("checks"_L1).toArray()) {
            if (value.toObject().value("id"_L1).toString() == "playlists"_L1) {
                QVERIFY(value.toObject().value("detail"_L1).toString().startsWith("None found"_L1));
            }
        }
    }

    void aFolderInASelectionIsRefusedByNameAndTheRestGoesOn() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"Gigs/L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        QJsonArray selection = engine.selectAll();
        const QJsonObject reply = engine.call(u"listPlaylists"_s).value("result"_L1).toObject();
        for (const auto &value : reply.value("playlists"_L1).toArray()) {
            if (value.toObject().value("isFolder"_L1).toBool()) {
                selection += QJsonObject{{u"source"_s, u"spotify"_s}, {u"id"_s, value.toObject().value("id"_L1)}};
            }
        }
        QCOMPARE(selection.size(), 2);
        QVERIFY(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, selection}}).value("ok"_L1).toBool());
        QVERIFY(dataOf(engine.until(u"error"_s)).value("message"_L1).toString().contains("Gigs is a folder"_L1));
        QVERIFY(!engine.until(u"syncDone"_s).isEmpty());
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
    }

    void provisioningReportsBothTools() {
        const EngineHome home;
        QProcessEnvironment environment;
        environment.insert(u"PATH"_s, home.path()); // no ffmpeg here
        EngineChild engine(home, environment);
        const QJsonObject result = engine.call(u"provisionTools"_s).value("result"_L1).toObject();
        QCOMPARE(result.value("ok"_L1).toBool(), false);
        const QJsonArray tools = result.value("tools"_L1).toArray();
        QCOMPARE(tools.size(), 2);
        QCOMPARE(tools[0].toObject().value("detail"_L1).toString(), u"Not needed by this engine"_s);
        QCOMPARE(tools[0].toObject().value("status"_L1).toString(), u"ok"_s);
        QVERIFY(tools[1].toObject().value("detail"_L1).toString().contains("\"ffmpeg\""_L1));
        QCOMPARE(dataOf(engine.until(u"toolProgress"_s)).value("tool"_L1).toString(), u"yt-dlp"_s);
    }

    void anAccountWhoseTokenCannotBeKeptStaysAsItWas() {
        const EngineHome home;
        QVERIFY(QDir().mkpath(home.path(u".config/zelk/secrets.json"_s))); // a folder of that name
        EngineChild engine(home);
        const auto connected = [&] {
            const QJsonObject config =
                engine.call(u"getConfig"_s).value("result"_L1).toObject().value("config"_L1).toObject();
            return config.value("spotifyConnected"_L1).toBool();
        };
        const QJsonObject refused =
            engine.call(u"storeAccountToken"_s, QJsonObject{{u"service"_s, u"spotify"_s}, {u"token"_s, u"hush"_s}});
        QVERIFY(messageOf(refused).contains("Nothing was changed"_L1));
        QVERIFY(!connected());
    }

    void aLastLineWithoutALineFeedIsAnsweredBeforeTheEnd() {
        const EngineHome home;
        EngineChild engine(home);
        engine.process().write(R"({"id":"q","method":"listPlaylists"})");
        QCOMPARE(engine.finish(), 0);
        QVERIFY(engine.process().readAll().contains("\"id\":\"q\",\"ok\":true"));
    }

    void aSyncIsAnsweredBeforeItsListsAreRead() {
        const EngineHome home;
        QByteArray list = "Track Name,Artist Name(s)\n";
        for (int i = 0; i < 60'000; ++i) {
            list += "Song number " + QByteArray::number(i) + " (feat. Somebody) [Extended Remix],Ann\n";
        }
        home.write(home.playlists(u"Long.csv"_s), list);
        EngineChild engine(home);
        engine.send("{\"id\":\"list\",\"method\":\"listPlaylists\"}\n"
                    R"({"id":"sync","method":"startSync","params":{"selection":[{"source":"spotify","id":"x"}]}})");
        QStringList story;
        while (story.size() < 3) {
            const QJsonObject line = engine.next();
            QVERIFY(!line.isEmpty());
            story += line.contains("id"_L1) ? line.value("id"_L1).toString() : line.value("event"_L1).toString();
        }
        QCOMPARE(story.first(), u"sync"_s);
    }

    void theEndOfTheReaderEndsItCalmly() {
        const EngineHome home;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home.path());
        QProcess engine;
        QProcess reader; // reads nothing and goes
        engine.setProcessEnvironment(environment);
        engine.setStandardOutputProcess(&reader);
        engine.start(QStringLiteral(ENGINE_PROGRAM), {u"serve"_s});
        reader.start(u"true"_s, {});
        QVERIFY(engine.waitForStarted() && reader.waitForFinished());
        for (int i = 0; i < 100 && engine.state() != QProcess::NotRunning; ++i) {
            engine.write("{\"id\":\"q\",\"method\":\"getConfig\"}\n");
            engine.waitForFinished(100);
        }
        QCOMPARE(engine.state(), QProcess::NotRunning);
        QCOMPARE(engine.exitStatus(), QProcess::NormalExit);
        QCOMPARE(engine.exitCode(), 0);
    }

    void wrongUseEndsWithStatusTwoAndUsage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("nothing") << QStringList{} << 2;
        QTest::newRow("unknown") << QStringList{u"dance"_s} << 2;
        QTest::newRow("too much") << QStringList{u"serve"_s, u"now"_s} << 2;
        QTest::newRow("help") << QStringList{u"--help"_s} << 0;
        QTest::newRow("version") << QStringList{u"--version"_s} << 0;
    }

    void wrongUseEndsWithStatusTwoAndUsage() {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QProcess process;
        process.start(QStringLiteral(ENGINE_PROGRAM), arguments);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), status);
        const QByteArray said = status == 0 ? process.readAllStandardOutput() : process.readAllStandardError();
        QVERIFY(said.contains("zelk"));
        QCOMPARE(said.contains("Usage:"), !arguments.contains(u"--version"_s));
    }
};

QTEST_GUILESS_MAIN(EngineServe)
#include "tst_engineserve.moc"

#include "Files/Download.h"
#include "Output/CopyFile.h"
#include "engine/EngineHome.h"
#include "engine/WebServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

QByteArray flac() {
    QFile file(QStringLiteral(AUDIO_FIXTURES "/tone.flac"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A home with one doubtful track.
void doubtful(const EngineHome &home) {
    home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
    home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
}

QJsonValue trackInReview(EngineChild &engine) {
    return dataOf(named(engine.syncAll(), u"needsReview"_s).value(0)).value("trackId"_L1);
}

void decide(EngineChild &engine, const QJsonValue &track, const QString &url) {
    const QJsonObject decision{{u"kind"_s, u"url"_s}, {u"url"_s, url}};
    engine.tell(u"reviewDecision"_s, {{u"trackId"_s, track}, {u"decision"_s, decision}});
}

/// All events up to the first of one of these names.
QList<QJsonObject> upTo(EngineChild &engine, const QStringList &names) {
    QList<QJsonObject> events;
    for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
        events += line;
        if (names.contains(line.value("event"_L1).toString())) {
            break;
        }
    }
    return events;
}

bool nothingLeft(const EngineHome &home) {
    return QDir(home.path(u".local/share/zelk/downloads"_s))
        .entryList(QDir::Files | QDir::Hidden | QDir::System)
        .isEmpty();
}

QString failureOf(const QString &url, const DownloadLimits &limits) {
    DownloadSink sink;
    sink.bytes = [](const QByteArray &) {};
    try {
        download(QUrl(url), limits, sink, {});
        return {};
    } catch (const DownloadFailed &failure) {
        return QString::fromUtf8(failure.what());
    }
}

} // namespace

/// Addresses of the web that the user gives for a doubtful track, served by this machine.
class EngineDownload : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWebAddressIsDownloadedAndTaken_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("a file") << u"/song.flac"_s;
        QTest::newRow("no extension") << u"/song"_s;
        QTest::newRow("another extension") << u"/song.mp3"_s;
        QTest::newRow("led on") << u"/moved"_s;
        QTest::newRow("of unknown length") << u"/stream"_s;
    }

    void aWebAddressIsDownloadedAndTaken() {
        QFETCH(QString, path);
        const WebServer server([](const QString &asked) {
            return asked == u"/moved"    ? WebServer::status("302 Found", "Location: /song\r\n")
                   : asked == u"/stream" ? QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + flac())
                                         : WebServer::ok(flac());
        });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        const QJsonValue track = trackInReview(engine);
        decide(engine, track, u' ' + server.url(path));
        const QList<QJsonObject> events = upTo(engine, {u"trackFinished"_s, u"error"_s});
        const QJsonObject finished = dataOf(events.last());
        QCOMPARE(finished.value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(finished.value("kind"_L1).toString(), u"downloaded"_s);
        QCOMPARE(finished.value("meta"_L1).toObject().value("format"_L1).toString(), u"FLAC"_s);
        const QList<QJsonObject> progress = named(events, u"downloadProgress"_s);
        QVERIFY(!progress.isEmpty());
        for (const QJsonObject &event : progress) {
            const double percent = dataOf(event).value("percent"_L1).toDouble(-1);
            QVERIFY(percent >= 0 && percent <= 100);
            QCOMPARE(dataOf(event).value("trackId"_L1), track);
        }
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.flac"_s});
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
        QVERIFY(nothingLeft(home));
    }

    void progressIsToldAtMostTenTimesASecond() {
        QByteArray wav = "RIFF";
        { // a long file that arrives in many pieces
            const EngineHome other;
            other.addWav(u"x.wav"_s, 1'000);
            wav = other.read(other.collection(u"x.wav"_s));
        }
        const WebServer server([&](const QString &) { return WebServer::ok(wav); });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        const QJsonValue track = trackInReview(engine);
        QElapsedTimer timer;
        timer.start();
        decide(engine, track, server.url(u"/long"_s));
        const QList<QJsonObject> events = upTo(engine, {u"trackFinished"_s, u"error"_s});
        const qint64 most = 1 + timer.elapsed() / 100;
        QCOMPARE(events.last().value("event"_L1).toString(), u"trackFinished"_s);
        QVERIFY(named(events, u"downloadProgress"_s).size() <= most);
        QVERIFY(home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void anAddressThatGivesNoFileLeavesTheTrackWaiting_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("said");
        QTest::newRow("not there") << u"/missing"_s << u"answered 404"_s;
        QTest::newRow("server's fault") << u"/broken"_s << u"answered 500"_s;
        QTest::newRow("a page") << u"/page"_s << u"can't be read as audio"_s;
        QTest::newRow("nothing in it") << u"/empty"_s << u"can't be read as audio"_s;
        QTest::newRow("sound that isn't") << u"/fake"_s << u"can't be used"_s;
        QTest::newRow("cut off") << u"/cut"_s << u"can't be fetched"_s;
        QTest::newRow("too large") << u"/huge"_s << u"is larger than 2000 MB"_s;
        QTest::newRow("in a circle") << u"/circle"_s << u"leads on"_s;
        QTest::newRow("to a file of this machine") << u"/inside"_s << u"leads on"_s;
        QTest::newRow("unsafe") << u"https"_s << u"no safe connection"_s;
        QTest::newRow("another kind") << u"ftp://127.0.0.1/x.mp3"_s << u"http://"_s;
        QTest::newRow("no host") << u"http://"_s << u"address"_s;
    }

    void anAddressThatGivesNoFileLeavesTheTrackWaiting() {
        QFETCH(QString, path);
        QFETCH(QString, said);
        const WebServer server([](const QString &asked) {
            return asked == u"/missing"  ? WebServer::status("404 Not Found")
                   : asked == u"/broken" ? WebServer::status("500 Oh")
                   : asked == u"/page"   ? WebServer::ok("<html>Buy now</html>")
                   : asked == u"/empty"  ? WebServer::ok({})
                   : asked == u"/fake"   ? WebServer::ok("fLaC" + QByteArray(5'000, 'x'))
                   : asked == u"/cut"    ? WebServer::ok(flac()).chopped(2'000)
                   : asked == u"/huge"   ? QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 3000000000\r\n\r\nfLaC")
                   : asked == u"/circle" ? WebServer::status("302 Found", "Location: /circle\r\n")
                   : asked == u"/inside" ? WebServer::status("302 Found", "Location: file:///etc/passwd\r\n")
                                         : QByteArray("What?\n");
        });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        const QJsonValue track = trackInReview(engine);
        const bool isWhole = path.contains("://"_L1);
        decide(engine, track, path == "https"_L1 ? server.url(u"/"_s, path) : isWhole ? path : server.url(path));
        const QString message = dataOf(engine.until(u"error"_s)).value("message"_L1).toString();
        QVERIFY2(message.contains(said), qPrintable(message));
        if (!isWhole) { // the row may have shown progress
            QCOMPARE(dataOf(engine.until(u"needsReview"_s)).value("trackId"_L1), track);
        }
        QVERIFY(home.outputFiles().isEmpty());
        QVERIFY(nothingLeft(home));
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
    }

    void anAddressThatWasTakenIsKept() {
        const WebServer server([](const QString &) { return WebServer::ok(flac()); });
        const EngineHome home;
        doubtful(home);
        {
            EngineChild engine(home);
            decide(engine, trackInReview(engine), server.url(u"/song"_s));
            QVERIFY(!engine.until(u"trackFinished"_s).isEmpty());
            QCOMPARE(engine.finish(), 0);
        }
        QVERIFY(QFile::remove(home.output(u"/Ines - Slow Burn.flac"_s)));
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s});
        QVERIFY(!named(events, u"downloadProgress"_s).isEmpty());
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.flac"_s});
        QCOMPARE(server.asked(u"/song"_s), 2);
        QVERIFY(nothingLeft(home));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
    }

    void whatAKilledEngineLeftOfADownloadGoesWithTheNextStart() {
        const EngineHome home;
        home.write(home.path(u".local/share/zelk/downloads/.zelk-partial-999999999-1-1.part"_s), "half a song");
        EngineChild engine(home);
        engine.selectAll();
        QVERIFY(nothingLeft(home));
    }

    void aPlaceForDownloadsThatIsNoneIsNamedAndNotTheOutputFolder() {
        const WebServer server([](const QString &) { return WebServer::ok(flac()); });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        decide(engine, trackInReview(engine), server.url(u"/song"_s));
        QVERIFY(!engine.until(u"trackFinished"_s).isEmpty());
        QVERIFY(QFile::remove(home.output(u"/Ines - Slow Burn.flac"_s)));
        const QString downloads = home.path(u".local/share/zelk/downloads"_s);
        QVERIFY(QDir(downloads).removeRecursively());
        home.write(downloads, "a file");
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"failed"_s});
        const QString detail = dataOf(named(events, u"trackFinished"_s).value(0)).value("detail"_L1).toString();
        QVERIFY2(detail.contains(downloads + u" can't be written"_s), qPrintable(detail));
        QVERIFY2(named(events, u"error"_s).isEmpty(), "the output folder was blamed");
    }

    void theEndOfInputEndsADownload() {
        const WebServer server([](const QString &) { return QByteArray(); });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        decide(engine, trackInReview(engine), server.url(u"/never"_s));
        QTRY_COMPARE_WITH_TIMEOUT(server.asked(u"/never"_s), 1, 20'000);
        QCOMPARE(engine.finish(), 0);
        QVERIFY(home.outputFiles().isEmpty());
        QVERIFY(nothingLeft(home));
    }

    void aSlowDownloadHoldsUpNeitherOtherDecisionsNorTheNextRun() {
        const WebServer server([](const QString &) { return QByteArray(); });
        const EngineHome home;
        doubtful(home);
        home.addAudio(u"live2.mp3"_s, u"Ines"_s, u"Long Day (Live)"_s);
        home.addList(u"M.csv"_s, {u"Long Day|Ines|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> reviews = named(engine.syncAll(), u"needsReview"_s);
        QCOMPARE(reviews.size(), 2);
        decide(engine, dataOf(reviews.first()).value("trackId"_L1), server.url(u"/never"_s));
        QTRY_COMPARE_WITH_TIMEOUT(server.asked(u"/never"_s), 1, 20'000);

        const QJsonValue other = dataOf(reviews.last()).value("trackId"_L1);
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, other}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        const QJsonObject finished = dataOf(engine.until(u"trackFinished"_s));
        QCOMPARE(finished.value("trackId"_L1), other);
        QCOMPARE(finished.value("status"_L1).toString(), u"ok"_s);
        QVERIFY(!engine.until(u"syncDone"_s).isEmpty()); // with the new numbers

        QStringList next = endings(engine.syncAll()).values();
        next.sort(); // ids of lists depend on the folder
        QCOMPARE(next, QStringList({u"present"_s, u"review"_s}));
        QCOMPARE(engine.finish(), 0);
        QVERIFY(nothingLeft(home));
    }

    void aDownloadThatEndsInALaterRunSpeaksForThatOne() {
        std::promise<void> gate;
        const std::shared_future<void> open = gate.get_future().share();
        const WebServer server([open](const QString &) {
            open.wait();
            return WebServer::ok(flac());
        });
        const EngineHome home;
        doubtful(home);
        EngineChild engine(home);
        decide(engine, trackInReview(engine), server.url(u"/slow"_s));
        QTRY_COMPARE_WITH_TIMEOUT(server.asked(u"/slow"_s), 1, 20'000);
        const QList<QJsonObject> next = engine.syncAll();
        const QString runId = next.first().value("correlationId"_L1).toString();
        QCOMPARE(endings(next).values(), QStringList{u"review"_s});
        gate.set_value();
        const QList<QJsonObject> late = upTo(engine, {u"trackFinished"_s, u"error"_s});
        for (const QJsonObject &event : late) {
            QCOMPARE(event.value("correlationId"_L1).toString(), runId);
        }
        QCOMPARE(dataOf(late.last()).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.flac"_s});
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
    }

    void aServerThatSaysNothingIsGivenUp() {
        const WebServer server([](const QString &) { return QByteArray(); });
        DownloadLimits limits;
        limits.silence = std::chrono::milliseconds(50);
        const QString said = failureOf(server.url(u"/never"_s), limits);
        QVERIFY2(said.contains(u"doesn't answer"_s), qPrintable(said));
    }

    void aServerThatFallsSilentIsGivenUp() {
        const WebServer server([](const QString &) { return QByteArray(); });
        DownloadLimits limits;
        limits.whole = std::chrono::milliseconds(50);
        const QString said = failureOf(server.url(u"/never"_s), limits);
        QVERIFY2(said.contains(u"doesn't answer"_s), qPrintable(said));
    }

    void moreThanWasAnnouncedIsCutOffAtTheLimit() {
        const WebServer server(
            [](const QString &) { return QByteArray("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(50'000, 'x')); });
        DownloadLimits limits;
        limits.bytes = 20'000;
        const QString said = failureOf(server.url(u"/stream"_s), limits);
        QVERIFY2(said.contains(u"is larger"_s), qPrintable(said));
    }

    void whatTheSinkThrowsComesOut() {
        const WebServer server([](const QString &) { return WebServer::ok("x"); });
        DownloadSink sink;
        sink.bytes = [](const QByteArray &) { throw std::out_of_range("full"); };
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, download(QUrl(server.url(u"/x"_s)), {}, sink, {}));
    }

    void aStopEndsItAtOnce() {
        const WebServer server([](const QString &) { return QByteArray(); });
        std::stop_source stop;
        stop.request_stop();
        DownloadSink sink;
        sink.bytes = [](const QByteArray &) {};
        QVERIFY_THROWS_EXCEPTION(Stopped, download(QUrl(server.url(u"/never"_s)), {}, sink, stop.get_token()));
    }

    void noPasswordOfAnAddressIsTold() {
        const WebServer server([](const QString &) { return WebServer::status("404 Not Found"); });
        QString url = server.url(u"/x"_s);
        url.insert(7, u"me:hush@"_s);
        QVERIFY(!failureOf(url, {}).contains(u"hush"_s));
    }
};

QTEST_GUILESS_MAIN(EngineDownload)
#include "tst_enginedownload.moc"

#include "Output/Tagging.h"
#include "Run/CoverDesk.h"
#include "engine/EngineHome.h"
#include "engine/LibraryText.h"
#include "engine/WebServer.h"

#include <QJsonArray>
#include <QStandardPaths>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

const QByteArray jpeg = QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(3'000, 'j');
const QByteArray png = QByteArray("\x89PNG\r\n\x1A\n", 8) + QByteArray(3'000, 'p');

/// An AIFF file of one second of silence.
QByteArray aiff() {
    const QByteArray rate = QByteArray::fromHex("400bfa00000000000000"); // 8,000
    const QByteArray samples(16'000, 0);
    const auto big = [](qsizetype value) {
        return QByteArray::fromHex(QByteArray::number(value, 16).rightJustified(8, '0'));
    };
    const QByteArray common =
        "COMM" + big(18) + QByteArray::fromHex("0001") + big(8'000) + QByteArray::fromHex("0010") + rate;
    const QByteArray sound = "SSND" + big(samples.size() + 8) + big(0) + big(0) + samples;
    return "FORM" + big(4 + common.size() + sound.size()) + "AIFF" + common + sound;
}

/// A file of that kind in a home's collection.
QString fileOf(const EngineHome &home, const QString &extension) {
    const QString name = u"Ann - One."_s + extension;
    if (extension == u"wav"_s) {
        home.addWav(name, 2);
    } else if (extension == u"aiff"_s) {
        home.write(home.collection(name), aiff());
    } else {
        home.addAudio(name, u"Ann"_s, u"One"_s);
    }
    return home.collection(name);
}

void addListWithCovers(const EngineHome &home, const QStringList &titles, const QString &address) {
    QByteArray csv = "Track Name,Artist Name(s),Track Duration (ms),Album Image URL\n";
    for (const QString &title : titles) {
        csv += u"%1,Ann,2000,%2\n"_s.arg(title, address.contains(u"%1"_s) ? address.arg(title) : address).toUtf8();
    }
    home.write(home.playlists(u"L.csv"_s), csv);
}

QByteArray coverBytes(const QString &path) {
    return coverIn(path).value_or(Cover()).bytes;
}

QByteArray coverOfOutput(const EngineHome &home) {
    return home.outputFiles().size() == 1 ? coverBytes(home.output(u'/' + home.outputFiles().first())) : "no file";
}

} // namespace

/// The pictures that written files get, and where they come from.
class EngineCovers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyFormatTakesACoverOnce_data() {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {"mp3", "flac", "opus", "m4a", "wav", "aiff"}) {
            QTest::newRow(extension) << QString::fromLatin1(extension);
        }
    }

    void everyFormatTakesACoverOnce() {
        QFETCH(QString, extension);
        const EngineHome home;
        const QString path = fileOf(home, extension);
        QVERIFY(!coverIn(path));
        writeTags(path, {u"One"_s, u"Ann"_s, {}}, coverOf(png));
        const auto cover = coverIn(path);
        QVERIFY(cover);
        QCOMPARE(cover->bytes, png);
        QCOMPARE(cover->mimeType, u"image/png"_s);
        writeTags(path, {u"One"_s, u"Ann"_s, {}}, coverOf(jpeg));
        QCOMPARE(coverBytes(path), png); // its own stays
    }

    void onlyPicturesOfSensibleSizeAreCovers_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isCover");
        QTest::newRow("jpeg") << jpeg << true;
        QTest::newRow("png") << png << true;
        QTest::newRow("nothing") << QByteArray() << false;
        QTest::newRow("a page") << QByteArray("<html>") << false;
        QTest::newRow("half a signature") << QByteArray("\x89PN", 3) << false;
        QTest::newRow("the largest") << jpeg.leftJustified(5'000'000, 'x') << true;
        QTest::newRow("too large") << jpeg.leftJustified(5'000'001, 'x') << false;
    }

    void onlyPicturesOfSensibleSizeAreCovers() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isCover);
        QCOMPARE(coverOf(bytes).has_value(), isCover);
        const EngineHome home;
        home.write(home.collection(u"Folder.jpg"_s), bytes);
        QCOMPARE(coverBeside(home.collection(u"a.mp3"_s)).has_value(), isCover);
    }

    void aListsCoverIsFetchedOnceForAllItsTracks() {
        const WebServer server([](const QString &) { return WebServer::ok(jpeg); });
        const EngineHome home;
        QStringList titles;
        for (const QString &title : {u"Alpha"_s, u"Bravo"_s, u"Charlie"_s}) {
            home.addAudio(title + u".mp3"_s, u"Ann"_s, title);
            titles += title;
        }
        addListWithCovers(home, titles, server.url(u"/cover"_s));
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles().size(), 3);
        for (const QString &name : home.outputFiles()) {
            QCOMPARE(coverBytes(home.output(u'/' + name)), jpeg);
        }
        QCOMPARE(server.askedInAll(), 1);
    }

    void whatTheFileHasOrWhatLiesBesideItComesFirst_data() {
        QTest::addColumn<bool>("isInside");
        QTest::newRow("in its tags") << true;
        QTest::newRow("beside it") << false;
    }

    void whatTheFileHasOrWhatLiesBesideItComesFirst() {
        QFETCH(bool, isInside);
        const WebServer server([](const QString &) { return WebServer::ok(jpeg); });
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        if (isInside) {
            writeTags(home.collection(u"a.flac"_s), {u"One"_s, u"Ann"_s, {}}, coverOf(png));
        } else {
            home.write(home.collection(u"cover.png"_s), png);
        }
        addListWithCovers(home, {u"One"_s}, server.url(u"/cover"_s));
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(coverOfOutput(home), png);
        QCOMPARE(server.askedInAll(), 0);
    }

    void aCoverThatCannotBeHadFailsNoTrack_data() {
        QTest::addColumn<QByteArray>("answer"); // empty: silence
        QTest::newRow("not there") << WebServer::status("404 Not Found");
        QTest::newRow("no picture") << WebServer::ok("<html>");
        QTest::newRow("huge") << WebServer::ok(jpeg.leftJustified(6'000'000, 'x'));
        QTest::newRow("cut off") << WebServer::ok(jpeg).chopped(100);
        QTest::newRow("elsewhere") << WebServer::status("302 Found", "Location: file:///etc/passwd\r\n");
        QTest::newRow("silence") << QByteArray();
    }

    void aCoverThatCannotBeHadFailsNoTrack() {
        QFETCH(QByteArray, answer);
        const WebServer server([answer](const QString &) { return answer; });
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        addListWithCovers(home, {u"One"_s}, server.url(u"/cover"_s));
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(coverOfOutput(home), QByteArray());
    }

    void addressesThatAreNoneFailNoTrack_data() {
        QTest::addColumn<QString>("address");
        QTest::newRow("nonsense") << u"http://[not an address"_s;
        QTest::newRow("nobody there") << u"http://127.0.0.1:1/x.jpg"_s;
        QTest::newRow("another kind") << u"ftp://127.0.0.1/x.jpg"_s;
        QTest::newRow("a folder") << u"file:///etc"_s;
        QTest::newRow("text") << u"n/a"_s;
    }

    void addressesThatAreNoneFailNoTrack() {
        QFETCH(QString, address);
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        addListWithCovers(home, {u"One"_s}, address);
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(coverOfOutput(home), QByteArray());
    }

    void aHostThatFailsAgainAndAgainIsLeftAlone() {
        const WebServer server([](const QString &) { return WebServer::status("500 Oh"); });
        CoverDesk desk({});
        for (int i = 0; i < 20; ++i) {
            QVERIFY(!desk.take({server.url(u"/%1"_s.arg(i)), {}}));
        }
        QCOMPARE(server.askedInAll(), 3);
    }

    void aCoverIsWaitedForNoLongerThanItsLimit() {
        const WebServer server([](const QString &) { return QByteArray(); });
        const std::chrono::milliseconds limit(50);
        CoverDesk desk({}, {1'000, limit, limit});
        QVERIFY(!desk.take({server.url(u"/never"_s), {}}));
    }

    void aPictureOfThisMachineIsReadWhereAListNamesIt() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.write(home.path(u"pictures/x.png"_s), png);
        addListWithCovers(home, {u"One"_s}, QUrl::fromLocalFile(home.path(u"pictures/x.png"_s)).toString());
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(coverOfOutput(home), png);
    }

    /// The Music app's covers are in its files, of which another one may have been taken.
    void theFileThatTheLibraryNamesGivesItsCover() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"A1"_s, u"T1"_s);
        const QString named = home.path(u"Elsewhere/x.mp3"_s);
        home.write(named, home.read(QStringLiteral(AUDIO_FIXTURES "/tone.mp3")));
        writeTags(named, {u"T1"_s, u"A1"_s, {}}, coverOf(jpeg));
        home.write(home.path(u"Music/Library.xml"_s),
                   library("<key>1</key><dict>" + text("Name", "T1") + text("Artist", "A1") +
                               text("Persistent ID", "P1") + number("Total Time", 2'000) +
                               text("Location", QUrl::fromLocalFile(named).toEncoded()) + "</dict>",
                           list("Mine", "L1", rows({1}))));
        EngineChild engine(home);
        engine.syncAll({{u"qualityFloor"_s, u"flac"_s}});
        QCOMPARE(home.outputFiles(), QStringList{u"A1 - T1.flac"_s});
        QCOMPARE(coverOfOutput(home), jpeg);
    }

    void aConversionKeepsTheCover() {
        if (QStandardPaths::findExecutable(u"ffmpeg"_s).isEmpty()) {
            QSKIP("ffmpeg isn't installed; everyFormatTakesACoverOnce covers the reading and writing");
        }
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        writeTags(home.collection(u"a.opus"_s), {u"One"_s, u"Ann"_s, {}}, coverOf(png));
        addListWithCovers(home, {u"One"_s}, {});
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
        QCOMPARE(coverOfOutput(home), png);
    }

    void whatTheUserChoosesGetsTheListsCoverToo() {
        const WebServer server([](const QString &) { return WebServer::ok(jpeg); });
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ann"_s, u"Slow Burn (Live)"_s);
        addListWithCovers(home, {u"Slow Burn"_s}, server.url(u"/cover"_s));
        EngineChild engine(home);
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).value(0)).value("trackId"_L1);
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(coverOfOutput(home), jpeg);
    }

    void aDryRunFetchesNothing() {
        const WebServer server([](const QString &) { return WebServer::ok(jpeg); });
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        addListWithCovers(home, {u"One"_s}, server.url(u"/cover"_s));
        EngineChild engine(home);
        engine.syncAll({{u"dryRun"_s, true}});
        QCOMPARE(server.askedInAll(), 0);
    }
};

QTEST_GUILESS_MAIN(EngineCovers)
#include "tst_enginecovers.moc"

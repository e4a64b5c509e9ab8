#include "engine/EngineHome.h"
#include "engine/LibraryText.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QJsonObject config(EngineChild &engine) {
    return engine.call(u"getConfig"_s).value("result"_L1).toObject().value("config"_L1).toObject();
}

bool isConnected(EngineChild &engine, const QString &source) {
    return config(engine).value(source == u"spotify"_s ? "spotifyConnected"_L1 : "appleMusicConnected"_L1).toBool();
}

QString service(const QString &source) {
    return source == u"spotify"_s ? source : u"applemusic"_s;
}

bool isOk(const QJsonObject &reply) {
    return reply.value("ok"_L1).toBool();
}

QString messageOf(const QJsonObject &reply) {
    return reply.value("error"_L1).toObject().value("message"_L1).toString();
}

QJsonArray listed(EngineChild &engine, const QString &source) {
    return engine.call(u"listPlaylists"_s, QJsonObject{{u"source"_s, source}})
        .value("result"_L1)
        .toObject()
        .value("playlists"_L1)
        .toArray();
}

/// Puts an export of that source where it is looked for.
void addExport(const EngineHome &home, const QString &source) {
    if (source == u"spotify"_s) {
        home.addList(u"List.csv"_s, {u"T1|A1|2"_s});
    } else {
        home.write(home.path(u"Music/Library.xml"_s), library(track(1), list("List", "L1", rows({1}))));
    }
}

void bothSources() {
    QTest::addColumn<QString>("source");
    QTest::newRow("spotify") << u"spotify"_s;
    QTest::newRow("apple") << u"apple"_s;
}

} // namespace

/// Where playlists come from, as the application sees it: the built program as a dialogue of lines.
class EngineSources : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSourceIsConnectedWhenItsExportsAreFirstFound_data() { bothSources(); }
    void aSourceIsConnectedWhenItsExportsAreFirstFound() {
        QFETCH(QString, source);
        const EngineHome home;
        {
            EngineChild engine(home);
            QVERIFY(listed(engine, source).isEmpty());
            QVERIFY(!isConnected(engine, source));
            addExport(home, source);
            QCOMPARE(listed(engine, source).size(), 1);
            QVERIFY(isConnected(engine, source));
            QVERIFY(!isConnected(engine, source == u"spotify"_s ? u"apple"_s : u"spotify"_s));
        }
        QFile::remove(home.path(u"Music/Library.xml"_s));
        QFile::remove(home.playlists(u"List.csv"_s));
        EngineChild engine(home);
        QVERIFY(listed(engine, source).isEmpty());
        QVERIFY(isConnected(engine, source)); // a stored flag, not a finding
    }

    void exportsThatAreThereAtTheStartConnectWithoutARequest() {
        const EngineHome home;
        addExport(home, u"apple"_s);
        EngineChild engine(home);
        QTRY_VERIFY_WITH_TIMEOUT(isConnected(engine, u"apple"_s), 20'000);
    }

    void aDisconnectedSourceStaysHiddenUntilItIsConnectedAgain_data() { bothSources(); }
    void aDisconnectedSourceStaysHiddenUntilItIsConnectedAgain() {
        QFETCH(QString, source);
        const EngineHome home;
        addExport(home, u"spotify"_s);
        addExport(home, u"apple"_s);
        const QString other = source == u"spotify"_s ? u"apple"_s : u"spotify"_s;
        QJsonObject known;
        {
            EngineChild engine(home);
            known = listed(engine, source).at(0).toObject();
            QVERIFY(isOk(engine.call(u"disconnectAccount"_s, QJsonObject{{u"service"_s, service(source)}})));
            QVERIFY(!isConnected(engine, source));
            QVERIFY(listed(engine, source).isEmpty());
            QCOMPARE(listed(engine, other).size(), 1);
            const QJsonObject wanted{{u"source"_s, source}, {u"id"_s, known.value("id"_L1)}};
            QVERIFY(!isOk(engine.call(u"getPlaylistTracks"_s, wanted)));
        }
        EngineChild engine(home);
        QVERIFY(listed(engine, source).isEmpty()); // found again, and no reason to connect
        QVERIFY(!isConnected(engine, source));
        const QJsonObject token{{u"service"_s, service(source)}, {u"token"_s, u"t"_s}};
        QVERIFY(isOk(engine.call(u"storeAccountToken"_s, token)));
        QVERIFY(isConnected(engine, source));
        QCOMPARE(listed(engine, source).at(0).toObject(), known);
    }

    void aRunTakesNoPlaylistOfADisconnectedSource_data() { bothSources(); }
    void aRunTakesNoPlaylistOfADisconnectedSource() {
        QFETCH(QString, source);
        const EngineHome home;
        addExport(home, u"spotify"_s);
        addExport(home, u"apple"_s);
        home.addAudio(u"a.mp3"_s, u"A1"_s, u"T1"_s);
        EngineChild engine(home);
        const QJsonArray all = engine.selectAll();
        QCOMPARE(all.size(), 2);
        QVERIFY(isOk(engine.call(u"disconnectAccount"_s, QJsonObject{{u"service"_s, service(source)}})));
        QVERIFY(isOk(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, all}})));
        QCOMPARE(dataOf(engine.until(u"syncStarted"_s)).value("totalPlaylists"_L1).toInt(), 1);
        const QString said = dataOf(engine.until(u"error"_s)).value("message"_L1).toString();
        QVERIFY2(said.contains(u"List"_s) && said.contains(u"disconnected"_s), qPrintable(said));
        const QString played = dataOf(engine.until(u"playlistStarted"_s)).value("playlistId"_L1).toString();
        QVERIFY2(!played.startsWith(source + u':'), qPrintable(played));
        QCOMPARE(engine.until(u"playlistFinished"_s).isEmpty(), false);
        QCOMPARE(engine.next().value("event"_L1).toString(), u"syncDone"_s); // and no other list
    }

    void connectingSaysWhereToPutTheExportsUntilThereAreSome() {
        const EngineHome home;
        addExport(home, u"apple"_s);
        EngineChild engine(home);
        const QJsonObject refusal = engine.call(u"connectSpotify"_s);
        QVERIFY(!isOk(refusal));
        QVERIFY2(messageOf(refusal).contains(QFileInfo(home.playlists({})).path()), qPrintable(messageOf(refusal)));
        QVERIFY(!isConnected(engine, u"spotify"_s));
        home.write(home.playlists(u"Empty.csv"_s), {});
        QVERIFY(!isOk(engine.call(u"connectSpotify"_s)));
        addExport(home, u"spotify"_s);
        QVERIFY(isOk(engine.call(u"connectSpotify"_s)));
        QVERIFY(isConnected(engine, u"spotify"_s));
    }

    void theLibraryIsToldWithItsPictures() {
        const EngineHome home;
        home.write(
            home.path(u"Music/Library.xml"_s),
            library(track(1) + track(2), list("Sets", "F1", yes("Folder") + rows({2})) +
                                             list("Inner", "L1", text("Parent Persistent ID", "F1") + rows({1, 2}))));
        EngineChild engine(home);
        const QJsonArray playlists = listed(engine, u"apple"_s);
        QCOMPARE(playlists.size(), 2);
        const QJsonObject folder = playlists[0].toObject();
        const QJsonObject inner = playlists[1].toObject();
        QCOMPARE(folder.value("isFolder"_L1).toBool(), true);
        QVERIFY(!folder.contains("trackCount"_L1));
        QCOMPARE(folder.value("artwork"_L1).toObject(),
                 QJsonObject({{u"kind"_s, u"mosaic"_s}, {u"trackIds"_s, QJsonArray{u"P2"_s}}}));
        QCOMPARE(inner.value("parentId"_L1), folder.value("id"_L1));
        QCOMPARE(inner.value("trackCount"_L1).toInt(), 2);
        QCOMPARE(inner.value("artwork"_L1).toObject(),
                 QJsonObject({{u"kind"_s, u"mosaic"_s}, {u"trackIds"_s, QJsonArray{u"P1"_s, u"P2"_s}}}));
        const QJsonArray tracks =
            engine.call(u"getPlaylistTracks"_s, QJsonObject{{u"source"_s, u"apple"_s}, {u"id"_s, inner.value("id"_L1)}})
                .value("result"_L1)
                .toObject()
                .value("tracks"_L1)
                .toArray();
        QCOMPARE(tracks.size(), 2);
        QCOMPARE(tracks[0].toObject().value("artwork"_L1).toObject(),
                 QJsonObject({{u"kind"_s, u"appleMusic"_s}, {u"persistentID"_s, u"P1"_s}}));
        QCOMPARE(tracks[0].toObject().value("durationSec"_L1).toDouble(), 1.0);
    }

    void aFileThatCantBeReadIsALogEventAndTheOthersLoad() {
        const EngineHome home;
        home.addList(u"Sound.csv"_s, {u"a|b|1"_s});
        home.write(home.path(u"Music/Library.xml"_s), library(track(1), {}).chopped(40));
        EngineChild engine(home);
        QCOMPARE(engine.selectAll().size(), 1);
        const QJsonObject log = engine.until(u"log"_s);
        QCOMPARE(dataOf(log).value("level"_L1).toString(), u"warn"_s);
        const QString message = dataOf(log).value("message"_L1).toString();
        QVERIFY2(message.contains(u"Music/Library.xml, line "_s), qPrintable(message));
    }

    void theFileThatTheLibraryNamesIsTakenWhateverItIsCalled() {
        const EngineHome home;
        // One that would match by its name, and the one that the library knows.
        home.addAudio(u"a.flac"_s, u"A1"_s, u"T1"_s);
        home.write(home.path(u"Elsewhere/é #1.mp3"_s), home.read(QStringLiteral(AUDIO_FIXTURES "/tone.mp3")));
        const QByteArray location = QUrl::fromLocalFile(home.path(u"Elsewhere/é #1.mp3"_s)).toEncoded();
        home.write(home.path(u"Music/Library.xml"_s),
                   library("<key>1</key><dict>" + text("Name", "T1") + text("Artist", "A1") +
                               number("Total Time", 2'000) + text("Location", location) + "</dict>",
                           list("Mine", "L1", rows({1}))));
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(home.outputFiles(), QStringList{u"A1 - T1.mp3"_s});
    }

    void aLibraryThatBreaksOffKeepsItsFiles_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("cut") << library(track(1), list("List", "L1", rows({1}))).chopped(60);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("hostile") << QByteArray("<!DOCTYPE plist [<!ENTITY a 'b'>]><plist/>");
    }

    void aLibraryThatBreaksOffKeepsItsFiles() {
        QFETCH(QByteArray, content);
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"A1"_s, u"T1"_s);
        home.write(
            home.path(u"Music/Library.xml"_s),
            library(QByteArray(track(1)).replace("<integer>1000<", "<integer>2000<"), list("List", "L1", rows({1}))));
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles().size(), 1);
        const auto orphans = [&] {
            return engine.call(u"listOrphans"_s, QJsonObject{{u"selection"_s, QJsonArray()}})
                .value("result"_L1)
                .toObject()
                .value("paths"_L1)
                .toArray();
        };
        QCOMPARE(orphans().size(), 0);
        home.write(home.path(u"Music/Library.xml"_s), content);
        QCOMPARE(orphans().size(), 0);
        home.write(home.path(u"Music/Library.xml"_s), library({}, list("List", "L1", {})));
        QCOMPARE(orphans().size(), 1); // read, and really left
    }
};

QTEST_GUILESS_MAIN(EngineSources)
#include "tst_enginesources.moc"

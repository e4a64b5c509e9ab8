#include "engine/EngineHome.h"

#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QString detailOf(const QList<QJsonObject> &events) {
    return dataOf(named(events, u"trackFinished"_s).value(0)).value("detail"_L1).toString();
}

QByteArray m3u(int seconds, const QByteArray &artist, const QByteArray &title, const QString &path) {
    return "#EXTM3U\n#EXTINF:" + QByteArray::number(seconds) + "," + artist + " - " + title + "\n" + path.toUtf8() +
           "\n";
}

} // namespace

/// Files that a list itself names, and those that the engine has written itself.
class EngineLocations : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNamedFileThatHasComeSinceIsTakenThoughTheTrackRests() {
        const EngineHome home;
        const QString place = home.path(u"elsewhere/one.flac"_s);
        home.write(home.playlists(u"L.m3u"_s), m3u(2, "Ann", "One", place));
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"failed"_s});
        home.write(place, home.read(QStringLiteral(AUDIO_FIXTURES "/tone.flac")));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void aNamedFileThatTheSettingsShutOutIsToldAsThat() {
        const EngineHome home;
        const QString place = home.path(u"elsewhere/one.mp3"_s);
        home.write(place, home.read(QStringLiteral(AUDIO_FIXTURES "/tone.mp3")));
        home.write(home.playlists(u"L.m3u"_s), m3u(2, "Ann", "One", place));
        EngineChild engine(home);
        const QJsonObject quality{
            {u"floor"_s, u"any"_s}, {u"losslessOnly"_s, true}, {u"bestQuality"_s, true}, {u"upgradeEnabled"_s, false}};
        const QJsonObject patch{{u"quality"_s, quality}};
        QVERIFY(engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, patch}}).value("ok"_L1).toBool());
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"failed"_s});
        QVERIFY2(detailOf(events).contains("settings shut out"_L1), qPrintable(detailOf(events)));
    }

    void anOutputFolderInsideTheCollectionIsNoSource() {
        const EngineHome home;
        QProcessEnvironment environment;
        environment.insert(u"ZELK_COLLECTION_DIRS"_s, home.path(u"Music"_s));
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home, environment);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        home.addList(u"M.csv"_s, {u"One (Remastered)|Ann|2"_s, u"Two|Ann|2"_s});
        QStringList ends = endings(engine.syncAll()).values();
        ends.sort();
        QCOMPARE(ends, QStringList({u"failed"_s, u"present"_s, u"present"_s}));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
    }

    void aListThatNamesAWrittenFileMeansThatFile() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QVERIFY(QFile::remove(home.collection(u"a.flac"_s)));
        home.write(home.playlists(u"M.m3u"_s), m3u(2, "Somebody", "One of mine", home.output(u"/Ann - One.flac"_s)));
        QStringList ends = endings(engine.syncAll()).values();
        ends.sort();
        QCOMPARE(ends, QStringList({u"ok verified"_s, u"present"_s}));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
    }
};

QTEST_GUILESS_MAIN(EngineLocations)
#include "tst_enginelocations.moc"

#include "Library/AudioReader.h"
#include "engine/EngineHome.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// Everything below a folder but what the engine keeps for itself.
QStringList allBelow(const QString &folder) {
    QStringList all;
    for (QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
         it.hasNext();) {
        if (const QString path = it.next(); !path.contains("/.local"_L1) && !path.contains("/.config"_L1)) {
            all += path;
        }
    }
    all.sort();
    return all;
}

} // namespace

/// Names of artists, titles, lists and files that nobody should have, through whole runs.
class EngineNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noNameLeadsOutOfTheOutputFolder() {
        const EngineHome home;
        // Each has a length of its own, by which the row finds its file.
        const QList<std::pair<QString, QString>> tracks{{u".."_s, u"../../../escaped"_s},
                                                        {u"/etc"_s, u"/passwd"_s},
                                                        {u"~"_s, u"~/x"_s},
                                                        {u"Ann"_s, u"NUL"_s},
                                                        {u"COM1.x"_s, u"CON"_s},
                                                        {u"C:"_s, u"\\Windows"_s},
                                                        {u"."_s, u".."_s},
                                                        {u"a/../.."_s, u"b/../../c"_s}};
        QStringList rows;
        QMap<QString, QByteArray> sources;
        QByteArray csv = "Track Name,Artist Name(s),Track Duration (ms)\n";
        for (int i = 0; i < tracks.size(); ++i) {
            const auto &[artist, title] = tracks[i];
            const QString name = u"%1.flac"_s.arg(i);
            home.addAudio(name, artist, title);
            csv += u"\"%1\",\"%2\",2000\n"_s.arg(title, artist).toUtf8();
        }
        csv += QByteArray("\"a\0/../b\",\"Z\0\",2000\n", 19);
        home.write(home.playlists(u"L.csv"_s), csv);
        home.addAudio(u"device.flac"_s, u"Somebody"_s, u"Something"_s);
        home.write(home.playlists(u"M.m3u"_s),
                   u"#EXTM3U\n#EXTINF:2,CON\n%1\n"_s.arg(home.collection(u"device.flac"_s)).toUtf8());
        const QStringList before = allBelow(home.path());
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).size(), tracks.size() + 2);
        const QStringList made = home.outputFiles();
        QVERIFY2(made.size() >= tracks.size() - 1, qPrintable(made.join(u'\n')));
        QStringList after = allBelow(home.path());
        for (const QString &path : before) {
            QVERIFY(after.removeOne(path));
        }
        QVERIFY(after.removeOne(home.output()));
        QStringList expected;
        for (const QString &name : made) {
            expected += home.output(u'/' + name);
            QVERIFY2(!name.startsWith(u'.') && name != "CON.flac"_L1 && !name.contains(u'\\'), qPrintable(name));
        }
        expected.sort();
        QCOMPARE(after, expected);
        QVERIFY(!QFile::exists(home.path(u"../escaped.flac"_s)));
        QVERIFY2(made.contains(u"_CON.flac"_s), qPrintable(made.join(u'\n')));
    }

    void theLongestNamesAreReadAndWritten_data() {
        QTest::addColumn<QString>("sign");
        QTest::newRow("one byte") << u"x"_s;
        QTest::newRow("three bytes") << u"\u6F22"_s;
        QTest::newRow("four bytes") << u"🎧"_s;
    }

    void theLongestNamesAreReadAndWritten() {
        QFETCH(QString, sign);
        const EngineHome home;
        const QString longest = sign.repeated(250 / sign.toUtf8().size());
        const QString fileName = QString(u'_').repeated(250 - longest.toUtf8().size()) + longest + u".flac"_s;
        QCOMPARE(fileName.toUtf8().size(), 255);
        const QString title = sign.repeated(240 / sign.toUtf8().size());
        home.addAudio(u"a.flac"_s, u"Ann"_s, title + u"y"_s.repeated(200));
        QVERIFY(QFile::rename(home.collection(u"a.flac"_s), home.collection(fileName)));
        home.addAudio(u"b.mp3"_s, u"Ann"_s, title + u"z"_s.repeated(200)); // of the same name where that is cut
        home.addList(u"L.csv"_s,
                     {title + u"y"_s.repeated(200) + u"|Ann|2"_s, title + u"z"_s.repeated(200) + u"|Ann|2"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"ok downloaded"_s, u"ok downloaded"_s}));
        QCOMPARE(home.outputFiles().size(), 2);
        for (const QString &name : home.outputFiles()) {
            QVERIFY(name.toUtf8().size() <= 255 && name.toUtf8().size() > 200);
            QVERIFY(name.startsWith(u"Ann - "_s + sign));
        }
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"present"_s}));
    }

    void composedAndDecomposedAreOneNameInEveryPlace() {
        const EngineHome home;
        const QString composed = u"F\u00F6rsta Sn\u00F6n"_s;
        const QString decomposed = composed.normalized(QString::NormalizationForm_D);
        home.addAudio(composed + u".flac"_s, u"\u00C5sa"_s, composed);
        home.addList(composed + u".csv"_s, {composed + u"|\u00C5sa|2"_s, decomposed + u"|A\u030Asa|2"_s});
        EngineChild engine(home);
        const QStringList ends = endings(engine.syncAll()).values();
        QCOMPARE(ends.first(), u"ok downloaded"_s);
        QVERIFY(ends.last() == "ok verified"_L1 || ends.last() == "present"_L1);
        QCOMPARE(home.outputFiles(), QStringList{u"\u00C5sa - "_s + composed + u".flac"_s});
    }

    void aNamedFileIsFoundInEitherSpelling() {
        const EngineHome home;
        const QString composed = u"Caf\u00E9"_s;
        home.addWav(composed.normalized(QString::NormalizationForm_D) + u".wav"_s, 3);
        home.write(home.playlists(u"L.m3u8"_s),
                   u"#EXTM3U\n#EXTINF:3,Somebody - Something Else\n%1.wav\n"_s.arg(home.collection(composed)).toUtf8());
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void namesThatDifferInCaseAloneAreKeptApart() {
        const EngineHome home;
        const QStringList names{u"stra\u00DFe"_s, u"STRASSE"_s, u"Stra\u00DFe"_s};
        QStringList rows;
        for (int i = 0; i < names.size(); ++i) {
            const int seconds = 30 + 30 * i;
            home.addWav(u"%1/Zed - %2.wav"_s.arg(i).arg(names[i]), seconds);
            rows += u"%1|Zed|%2"_s.arg(names[i]).arg(seconds);
        }
        home.addList(u"L.csv"_s, rows);
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values().count(u"ok downloaded"_s), 3);
        QSet<QString> folded;
        for (const QString &name : home.outputFiles()) {
            folded.insert(name.toCaseFolded());
        }
        QCOMPARE(folded.size(), 3);
    }

    void twoListsOfOneNameAreTwoLists() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"x/Same.csv"_s, {u"One|Ann|2"_s});
        home.addList(u"y/Same.csv"_s, {u"Two|Ann|2"_s, u"One|Ann|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        const QList<QJsonObject> lists = named(events, u"playlistStarted"_s);
        QCOMPARE(lists.size(), 2);
        QCOMPARE(dataOf(lists[0]).value("name"_L1), dataOf(lists[1]).value("name"_L1));
        QVERIFY(dataOf(lists[0]).value("playlistId"_L1) != dataOf(lists[1]).value("playlistId"_L1));
        QCOMPARE(endings(events).size(), 3);
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - One.flac"_s, u"Ann - Two.flac"_s}));
        // One of them gone, the other keeps what both had.
        QVERIFY(QFile::remove(home.playlists(u"x/Same.csv"_s)));
        home.addList(u"x/Other.csv"_s, {u"Two|Ann|2"_s});
        QVERIFY(named(engine.syncAll(), u"orphansFound"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(EngineNames)
#include "tst_enginenames.moc"

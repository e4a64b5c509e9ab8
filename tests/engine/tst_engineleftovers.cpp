#include "engine/EngineHome.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QStringList orphansOf(EngineChild &engine) {
    QStringList names;
    const QJsonObject reply = engine.call(u"listOrphans"_s, QJsonObject{{u"selection"_s, QJsonArray()}});
    for (const auto &path : reply.value("result"_L1).toObject().value("paths"_L1).toArray()) {
        names += QFileInfo(path.toString()).fileName();
    }
    return names;
}

/// A home whose three tracks have been synced from a list of that name and content.
struct Synced {
    EngineHome home;

    Synced(const QString &name, const QByteArray &list) {
        for (const QString &title : {u"One"_s, u"Two"_s, u"Three"_s}) {
            home.addAudio(title + u".mp3"_s, u"Ann"_s, title);
        }
        home.write(home.playlists(name), list);
        EngineChild engine(home);
        engine.syncAll();
    }
};

constexpr auto table = "Track Name,Artist Name(s),Duration (ms)\nOne,Ann,2000\nTwo,Ann,2000\n\"Three\",Ann,2000\n";
constexpr auto m3u = "#EXTM3U\n#EXTINF:2,Ann - One\na\n#EXTINF:2,Ann - Two\nb\n#EXTINF:2,Ann - Three\nc\n";

} // namespace

/// Which of the files that were written are leftovers, and which only seem to be.
class EngineLeftovers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatLeftAWholeListIsALeftover() {
        const Synced scene(u"L.csv"_s, table);
        QCOMPARE(scene.home.outputFiles().size(), 3);
        const QByteArray shorter = QByteArray(table).replace("Two,Ann,2000\n", "");
        scene.home.write(scene.home.playlists(u"L.csv"_s), shorter);
        EngineChild engine(scene.home);
        QCOMPARE(orphansOf(engine), QStringList{u"Ann - Two.mp3"_s});
    }

    void aListThatBrokeOffKeepsItsFiles_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("whole");
        QTest::addColumn<QByteArray>("cut");
        const QByteArray csv = table;
        QTest::newRow("within quotes") << u"L.csv"_s << csv << csv.left(csv.indexOf("Three") + 2);
        QTest::newRow("between fields") << u"L.csv"_s << csv << csv.left(csv.indexOf("Two") + 4);
        QByteArray zeros = m3u;
        zeros.replace(zeros.indexOf("#EXTINF:2,Ann - Two"), 30, QByteArray(30, '\0'));
        QTest::newRow("filled with zeros") << u"L.m3u8"_s << QByteArray(m3u) << zeros;
        QTest::newRow("empty") << u"L.csv"_s << csv << QByteArray();
    }
    void aListThatBrokeOffKeepsItsFiles() {
        QFETCH(QString, name);
        QFETCH(QByteArray, whole);
        QFETCH(QByteArray, cut);
        const Synced scene(name, whole);
        QCOMPARE(scene.home.outputFiles().size(), 3);
        scene.home.write(scene.home.playlists(name), cut);
        EngineChild engine(scene.home);
        QVERIFY(orphansOf(engine).isEmpty());
        engine.syncAll({{u"cleanup"_s, true}});
        QCOMPARE(scene.home.outputFiles().size(), 3);
    }

    void aLastLineWithoutItsEndIsWhole() {
        const Synced scene(u"L.csv"_s, table);
        scene.home.write(scene.home.playlists(u"L.csv"_s), "Track Name,Artist Name(s),Duration (ms)\nOne,Ann,2000");
        EngineChild engine(scene.home);
        QCOMPARE(orphansOf(engine), QStringList({u"Ann - Three.mp3"_s, u"Ann - Two.mp3"_s}));
    }

    void aListInAFolderThatIsNotSearchedJustNowKeepsItsFiles() {
        const Synced scene(u"L.csv"_s, table);
        scene.home.write(scene.home.path(u"other/M.csv"_s), table);
        QProcessEnvironment elsewhere;
        elsewhere.insert(u"ZELK_PLAYLIST_DIRS"_s, scene.home.path(u"other"_s));
        {
            EngineChild engine(scene.home, elsewhere);
            engine.syncAll();
        }
        scene.home.write(scene.home.path(u"other/M.csv"_s), QByteArray(table).replace("One,Ann,2000\n", ""));
        {
            EngineChild engine(scene.home, elsewhere);
            QVERIFY(orphansOf(engine).isEmpty());
            engine.syncAll({{u"cleanup"_s, true}});
        }
        QCOMPARE(scene.home.outputFiles().size(), 3);
        // Once the list itself is gone, they are what they seem.
        QVERIFY(QFile::remove(scene.home.playlists(u"L.csv"_s)));
        scene.home.write(scene.home.playlists(u"Other.csv"_s), "Track Name\nNone\n");
        EngineChild engine(scene.home, elsewhere);
        QCOMPARE(orphansOf(engine), QStringList{u"Ann - One.mp3"_s});
    }

    void twoListsWhoseNamesOnlyLookAlikeAreTwo() {
        const QString composed = u"Caf\u00E9.csv"_s;
        const QString decomposed = u"Cafe\u0301.csv"_s;
        const Synced scene(composed, table);
        EngineChild engine(scene.home);
        const QJsonArray before = engine.selectAll();
        QCOMPARE(before.size(), 1);
        scene.home.addAudio(u"Four.mp3"_s, u"Ann"_s, u"Four"_s);
        scene.home.write(scene.home.playlists(decomposed), "Track Name,Artist Name(s),Duration (ms)\nFour,Ann,2000\n");
        const QJsonArray both = engine.selectAll();
        QCOMPARE(both.size(), 2);
        QVERIFY(both.contains(before.first())); // the first one's id is still its own
        engine.syncAll({{u"cleanup"_s, true}});
        QCOMPARE(scene.home.outputFiles().size(), 4);
    }
};

QTEST_GUILESS_MAIN(EngineLeftovers)
#include "tst_engineleftovers.moc"

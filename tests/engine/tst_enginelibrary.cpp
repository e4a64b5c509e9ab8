#include "Playlists/LibraryPlaylists.h"
#include "engine/LibraryText.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

ReadFile read(const QByteArray &bytes, ReadLimits limits = {}) {
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return readLibrary(device, limits);
}

/// Each list as "parent/name: titles", a folder with a trailing "/" instead of titles.
QStringList shown(const ReadFile &file) {
    QStringList lines;
    for (const ReadList &list : file.lists) {
        QString line;
        for (const ReadList &parent : file.lists) {
            if (parent.isFolder && !list.parentKey.isEmpty() && parent.key == list.parentKey) {
                line = parent.name + u'/';
            }
        }
        line += list.name + (list.isFolder ? u"/"_s : u":"_s);
        for (const ListedTrack &track : list.tracks) {
            line += u' ' + track.title;
        }
        lines += line;
    }
    return lines;
}

QString warningOf(const ReadFile &file) {
    return file.warnings.empty() ? QString() : file.warnings.front().message;
}

QByteArray manyEntities() {
    QByteArray head = "<!DOCTYPE plist [<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ';';
        head += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    return head + "]><plist><dict><key>&e29;</key><string/></dict></plist>";
}

QByteArray manyParameterEntities() {
    QByteArray head = "<!DOCTYPE plist [<!ENTITY % e0 \"<!-- ha -->\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "%e" + QByteArray::number(i - 1) + ';';
        head += "<!ENTITY % e" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
    }
    return head + "%e29;]><plist/>";
}

} // namespace

class EngineLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTrackIsReadWithAllThatItTells() {
        const ReadFile file =
            read(library(track(7, text("Album", "Rock &amp; Roll") + text("Location", "file:///m/a%20%C3%A5%23.mp3")),
                         list("Mine", "L1", rows({7}))));
        QCOMPARE(file.warnings.size(), 0u);
        QVERIFY(file.whole);
        const ListedTrack &track = file.lists.at(0).tracks.at(0);
        QCOMPARE(track.title, u"T7"_s);
        QCOMPARE(track.artist, u"A7"_s);
        QCOMPARE(track.album, u"Rock & Roll"_s);
        QCOMPARE(track.durationSec, 7.0);
        QCOMPARE(track.persistentId, u"P7"_s);
        QCOMPARE(track.location, u"/m/a å#.mp3"_s);
        QVERIFY(!track.rowKey.isEmpty());
    }

    void theOrderOfKeysDoesNotMatter() {
        const QByteArray tracks = "<key>Tracks</key><dict><key>1</key><dict>" + text("Persistent ID", "P1") +
                                  text("Name", "T1") + number("Track ID", 1) + "</dict></dict>";
        const QByteArray lists = "<key>Playlists</key><array><dict>" + rows({1}) + text("Parent Persistent ID", "F1") +
                                 text("Playlist Persistent ID", "L1") + text("Name", "Inner") + "</dict><dict>" +
                                 yes("Folder") + text("Playlist Persistent ID", "F1") + text("Name", "Outer") +
                                 "</dict></array>";
        const QStringList expected{u"Outer/Inner: T1"_s, u"Outer/"_s};
        QCOMPARE(shown(read(plist("<dict>" + tracks + lists + "</dict>"))), expected);
        QCOMPARE(shown(read(plist("<dict>" + lists + tracks + "</dict>"))), expected);
    }

    void whatTheAppHidesOrMakesItselfIsHidden_data() {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("master") << yes("Master") << true;
        QTest::newRow("not master") << no("Master") << false;
        QTest::newRow("invisible") << no("Visible") << true;
        QTest::newRow("visible") << yes("Visible") << false;
        QTest::newRow("distinguished") << number("Distinguished Kind", 4) << true;
        QTest::newRow("distinguished by nothing") << number("Distinguished Kind", 0) << true;
        QTest::newRow("distinguished by a text") << text("Distinguished Kind", "x") << true;
        QTest::newRow("smart") << QByteArray("<key>Smart Info</key><data>AQE=</data>") << false;
        QTest::newRow("none of these") << QByteArray() << false;
    }

    void whatTheAppHidesOrMakesItselfIsHidden() {
        QFETCH(QByteArray, key);
        QFETCH(bool, hidden);
        for (const QByteArray &more : {key + rows({1}), rows({1}) + key}) {
            const ReadFile file = read(library(track(1), list("Music", "L1", more)));
            QCOMPARE(file.lists.empty(), hidden);
            QCOMPARE(file.warnings.size(), 0u);
        }
    }

    void aNameHidesNothing() {
        const ReadFile file = read(library(track(1), list("Library", "L1", rows({1})) + list("Music", "L2", {}) +
                                                         list("Downloaded", "L3", {}) + list("", "L4", {})));
        QCOMPARE(shown(file), QStringList({u"Library: T1"_s, u"Music:"_s, u"Downloaded:"_s, u":"_s}));
    }

    void foldersLieInEachOtherByTheirIds() {
        const ReadFile file = read(library(
            track(1), list("A", "F1", yes("Folder") + rows({1})) +
                          list("B", "F2", yes("Folder") + text("Parent Persistent ID", "F1")) +
                          list("C", "L1", text("Parent Persistent ID", "F2") + rows({1})) +
                          list("Hidden", "F3", yes("Folder") + no("Visible") + text("Parent Persistent ID", "F2")) +
                          list("Deeper", "F4", yes("Folder") + no("Visible") + text("Parent Persistent ID", "F3")) +
                          list("D", "L2", text("Parent Persistent ID", "F4")) +
                          list("E", "L3", text("Parent Persistent ID", "gone")) +
                          list("F", "L4", text("Parent Persistent ID", "L1"))));
        QCOMPARE(shown(file), QStringList({u"A/"_s, u"A/B/"_s, u"B/C: T1"_s, u"B/D:"_s, u"E:"_s, u"F:"_s}));
    }

    void foldersThatLieInThemselvesAreTakenApart() {
        const ReadFile file = read(library({}, list("A", "F1", yes("Folder") + text("Parent Persistent ID", "F3")) +
                                                   list("B", "F2", yes("Folder") + text("Parent Persistent ID", "F1")) +
                                                   list("C", "F3", yes("Folder") + text("Parent Persistent ID", "F2")) +
                                                   list("D", "F4", yes("Folder") + text("Parent Persistent ID", "F4")) +
                                                   list("E", "L1", text("Parent Persistent ID", "F2"))));
        QCOMPARE(file.lists.size(), 5u);
        int atTop = 0;
        for (const ReadList &list : file.lists) {
            atTop += list.parentKey.isEmpty() ? 1 : 0;
        }
        QCOMPARE(atTop, 2); // one of the ring, and the one in itself
        QCOMPARE(shown(file).at(4), u"B/E:"_s);
    }

    void foldersInFoldersWithoutEndAreArranged() {
        QByteArray lists;
        constexpr int depth = 50'000;
        for (int i = 0; i < depth; ++i) {
            const QByteArray hidden = i % 2 == 0 ? QByteArray() : no("Visible");
            lists += list("F", 'F' + QByteArray::number(i),
                          yes("Folder") + hidden + text("Parent Persistent ID", 'F' + QByteArray::number(i + 1)));
            lists += list("L", 'L' + QByteArray::number(i),
                          text("Parent Persistent ID", 'F' + QByteArray::number(i)) + rows({1}));
        }
        const ReadFile file = read(library(track(1), lists));
        QCOMPARE(file.lists.size(), static_cast<std::size_t>(depth + depth / 2));
        QCOMPARE(file.lists[0].parentKey, u"F2"_s);
        QCOMPARE(file.lists[2].parentKey, u"F2"_s);
    }

    void aListIsPicturedByItsFirstFour_data() {
        QTest::addColumn<QList<int>>("ids");
        QTest::addColumn<QStringList>("tiles");
        QTest::newRow("six") << QList<int>{3, 1, 2, 5, 4, 6} << QStringList{u"P3"_s, u"P1"_s, u"P2"_s, u"P5"_s};
        QTest::newRow("two") << QList<int>{2, 1} << QStringList{u"P2"_s, u"P1"_s};
        QTest::newRow("one that isn't there") << QList<int>{9, 1} << QStringList{u"P1"_s};
        QTest::newRow("none") << QList<int>{} << QStringList{};
    }

    void aListIsPicturedByItsFirstFour() {
        QFETCH(QList<int>, ids);
        QFETCH(QStringList, tiles);
        const QByteArray tracks = track(1) + track(2) + track(3) + track(4) + track(5) + track(6);
        const ArtworkRef expected = tiles.isEmpty() ? ArtworkRef::none() : ArtworkRef::mosaic(tiles);
        QCOMPARE(read(library(tracks, list("L", "L1", rows(ids)))).lists.at(0).artwork, expected);
        const ReadFile folder = read(library(tracks, list("F", "F1", yes("Folder") + rows(ids))));
        QCOMPARE(folder.lists.at(0).artwork, expected);
        QVERIFY(folder.lists.at(0).tracks.empty());
    }

    void aFolderWithoutRowsIsPicturedByWhatIsInIt() {
        const ReadFile file = read(library(
            track(1) + track(2) + track(3),
            list("A", "F1", yes("Folder")) + list("B", "F2", yes("Folder") + text("Parent Persistent ID", "F1")) +
                list("C", "L1", text("Parent Persistent ID", "F2") + rows({1, 2})) +
                list("H", "L0", no("Visible") + text("Parent Persistent ID", "F1") + rows({3})) +
                list("D", "L2", text("Parent Persistent ID", "F1") + rows({2, 3, 1})) +
                list("E", "F3", yes("Folder"))));
        QCOMPARE(file.lists.at(0).artwork, ArtworkRef::mosaic({u"P1"_s, u"P2"_s, u"P2"_s, u"P3"_s}));
        QCOMPARE(file.lists.at(1).artwork, ArtworkRef::mosaic({u"P1"_s, u"P2"_s}));
        QCOMPARE(file.lists.at(4).artwork, ArtworkRef::none());
    }

    void listsOfOneNameOrEvenOneIdAreToldApart() {
        const ReadFile file =
            read(library(track(1), list("Same", "L1", rows({1})) + list("Same", "L2", {}) + list("Same", "L2", {}) +
                                       list("Same", "", {}) + list("Same", "", {})));
        QSet<QString> keys;
        for (const ReadList &list : file.lists) {
            QVERIFY(!list.key.isEmpty());
            keys.insert(list.key);
        }
        QCOMPARE(keys.size(), 5);
        QCOMPARE(file.lists[0].key, u"L1"_s);
    }

    void aTrackTwiceInAListIsTwoRowsAndOneInTwoListsIsEqual() {
        const ReadFile file =
            read(library(track(1) + track(2), list("A", "L1", rows({1, 2, 1})) + list("B", "L2", rows({1}))));
        QCOMPARE(shown(file), QStringList({u"A: T1 T2 T1"_s, u"B: T1"_s}));
        QCOMPARE(file.lists[0].tracks[0], file.lists[1].tracks[0]);
    }

    void valuesOfAnotherKindCountAsAbsent_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("dictionary") << QByteArray("<dict><key>a</key><array><string>x</string></array></dict>");
        QTest::newRow("array") << QByteArray("<array><integer>1</integer></array>");
        QTest::newRow("boolean") << QByteArray("<true/>");
        QTest::newRow("data") << QByteArray("<data>AAAA</data>");
        QTest::newRow("empty number") << QByteArray("<integer/>");
        QTest::newRow("large number") << QByteArray("<integer>99999999999999999999999999</integer>");
        QTest::newRow("unknown") << QByteArray("<what>x</what>");
    }

    void valuesOfAnotherKindCountAsAbsent() {
        QFETCH(QByteArray, value);
        QByteArray fields;
        for (const char *key : {"Artist", "Album", "Total Time", "Persistent ID", "Location", "Track ID"}) {
            fields += QByteArray("<key>") + key + "</key>" + value;
        }
        const ReadFile file = read(library("<key>1</key><dict>" + text("Name", "T1") + fields + "</dict>",
                                           list("L", "L1", "<key>Folder</key><string>true</string>" + rows({1}))));
        QCOMPARE(file.warnings.size(), 0u);
        QCOMPARE(shown(file), QStringList{u"L: T1"_s});
        const ListedTrack &track = file.lists.at(0).tracks.at(0);
        QCOMPARE(track.artist, QString());
        QCOMPARE(track.durationSec, 0.0);
        QCOMPARE(track.location, QString());
        QCOMPARE(track.persistentId, QString());
    }

    void aMissingOrNegativeLengthIsZero() {
        const ReadFile file = read(library("<key>1</key><dict>" + text("Name", "a") + "</dict><key>2</key><dict>" +
                                               text("Name", "b") + number("Total Time", -5) + "</dict>",
                                           list("L", "L1", rows({1, 2}))));
        QCOMPARE(file.lists.at(0).tracks.at(0).durationSec, 0.0);
        QCOMPARE(file.lists.at(0).tracks.at(1).durationSec, 0.0);
    }

    void aTrackWithoutANameIsNamedByItsFileOrLeftOut() {
        const ReadFile file = read(library("<key>1</key><dict>" + text("Location", "file:///m/Ann%20-%20One.mp3") +
                                               "</dict><key>2</key><dict>" + text("Artist", "Bob") + "</dict>",
                                           list("L", "L1", rows({1, 2}))));
        QCOMPARE(shown(file), QStringList{u"L: One"_s});
        QCOMPARE(file.lists[0].tracks[0].artist, u"Ann"_s);
        QVERIFY2(warningOf(file).startsWith(u"1 tracks have neither"_s), qPrintable(warningOf(file)));
    }

    void onlyAFileAddressIsALocation() {
        const ReadFile file = read(library(track(1, text("Location", "http://x/a.mp3")) +
                                               track(2, text("Location", "file://localhost/m/b.mp3")) +
                                               track(3, text("Location", "/m/c.mp3")),
                                           list("L", "L1", rows({1, 2, 3}))));
        QCOMPARE(file.lists.at(0).tracks.at(0).location, QString());
        QCOMPARE(file.lists.at(0).tracks.at(1).location, u"/m/b.mp3"_s);
        QCOMPARE(file.lists.at(0).tracks.at(2).location, QString());
    }

    void aHostileOrBrokenLibraryGivesOneLineAndNoList_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("line");
        QTest::addColumn<QString>("said");
        const QByteArray sound = library(track(1), list("L", "L1", rows({1})));
        QTest::newRow("empty") << QByteArray() << 1LL << QString();
        QTest::newRow("no XML") << QByteArray("Track Name\nx\n") << 1LL << QString();
        QTest::newRow("another XML") << QByteArray("<html><body/></html>") << 1LL << u"isn't a library"_s;
        QTest::newRow("another list") << plist("<array><string>x</string></array>") << 4LL << u"dictionary"_s;
        QTest::newRow("no library") << plist("<dict>" + text("a", "b") + "</dict>") << 6LL << u"isn't a library"_s;
        QTest::newRow("binary") << QByteArray("bplist00\xd4\x01\x02\0\x03", 13) << 1LL << QString();
        QTest::newRow("cut in a track") << sound.left(sound.indexOf("Artist")) << 7LL << QString();
        QTest::newRow("cut before the end") << sound.chopped(10) << -1LL << QString();
        QTest::newRow("two roots") << sound + sound << -1LL << QString();
        QTest::newRow("wrong encoding") << QByteArray(sound).replace("T1", "\xE9t") << 1LL << QString();
        QTest::newRow("zeros") << QByteArray(sound).replace("T1", QByteArray("a\0b", 3)) << 6LL << QString();
        QTest::newRow("tracks no dictionary")
            << plist("<dict><key>Tracks</key><array/><key>Playlists</key><array/></dict>") << 4LL << u"dictionary"_s;
        QTest::newRow("a track no dictionary")
            << library("<key>1</key><string>x</string>", {}) << 5LL << u"dictionary"_s;
        QTest::newRow("lists no array") << plist("<dict><key>Playlists</key><dict/></dict>") << 4LL << u"array"_s;
        QTest::newRow("a list no dictionary") << library({}, "<string>x</string>") << 5LL << u"dictionary"_s;
        QTest::newRow("rows no array") << library({}, list("L", "L1", "<key>Playlist Items</key><dict/>")) << -1LL
                                       << u"array"_s;
        QTest::newRow("a row no dictionary")
            << library({}, list("L", "L1", "<key>Playlist Items</key><array><integer>1</integer></array>")) << -1LL
            << u"dictionary"_s;
        QTest::newRow("no key") << plist("<dict><string>x</string></dict>") << 4LL << u"key"_s;
        QTest::newRow("no value") << plist("<dict><key>Tracks</key></dict>") << 4LL << u"value"_s;
        QTest::newRow("deep") << plist("<dict><key>a</key>" + QByteArray("<array>").repeated(1'000'000)) << 4LL
                              << u"100 deep"_s;
        QTest::newRow("entity") << QByteArray("<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><dict/></plist>") << 1LL
                                << u"entities"_s;
        QTest::newRow("file of the system")
            << QByteArray("<!DOCTYPE plist [<!ENTITY a SYSTEM 'file:///etc/passwd'>]>\n<plist><dict><key>&a;</key>"
                          "<string>x</string></dict></plist>")
            << 1LL << u"entities"_s;
        QTest::newRow("entities that multiply") << manyEntities() << 1LL << QString();
        QTest::newRow("entities of the head that multiply") << manyParameterEntities() << 1LL << QString();
    }

    void aHostileOrBrokenLibraryGivesOneLineAndNoList() {
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, line);
        QFETCH(QString, said);
        const ReadFile file = read(bytes);
        QVERIFY(file.lists.empty());
        QVERIFY(!file.whole);
        QCOMPARE(file.warnings.size(), 1u);
        QVERIFY2(warningOf(file).contains(said), qPrintable(warningOf(file)));
        QVERIFY2(line < 0 ? file.warnings[0].line > 0 : file.warnings[0].line == line,
                 qPrintable(QString::number(file.warnings[0].line)));
    }

    void anEntityThatNobodyDeclaresIsNothing() {
        const ReadFile file = read(library(track(1, text("Album", "a&nothing;b")), list("L", "L1", rows({1}))));
        QCOMPARE(file.lists.at(0).tracks.at(0).album, u"ab"_s);
    }

    void aLibraryBeyondTheLimitsIsRefused_data() {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("said");
        QTest::newRow("tracks") << 0 << u"more than 2 tracks"_s;
        QTest::newRow("rows") << 1 << u"more than 2 rows"_s;
        QTest::newRow("lists") << 2 << u"more than 2 playlists"_s;
        QTest::newRow("text") << 3 << u"as much text"_s;
    }

    void aLibraryBeyondTheLimitsIsRefused() {
        QFETCH(int, field);
        QFETCH(QString, said);
        ReadLimits limits;
        (field == 0 ? limits.tracks : field == 1 ? limits.rows : field == 2 ? limits.lists : limits.characters) = 2;
        const ReadFile file =
            read(library(track(1) + track(2) + track(3),
                         list("A", "L1", rows({1, 2, 3})) + list("B", "L2", {}) + list("C", "L3", {})),
                 limits);
        QVERIFY(file.lists.empty());
        QVERIFY(!file.whole);
        QVERIFY2(warningOf(file).contains(said), qPrintable(warningOf(file)));
    }

    void aHundredThousandTracksAreRead() {
        QByteArray tracks;
        QList<int> all;
        for (int i = 1; i <= 100'000; ++i) {
            tracks += track(i, text("Location", "file:///m/a%20" + QByteArray::number(i) + ".mp3"));
            all += i;
        }
        const ReadFile file = read(library(tracks, list("All", "L1", rows(all)) + list("Again", "L2", rows(all))));
        QCOMPARE(file.warnings.size(), 0u);
        QCOMPARE(file.lists.at(0).tracks.size(), 100'000u);
        QCOMPARE(file.lists.at(1).tracks.back().title, u"T100000"_s);
        // The two lists share their texts, or the memory would grow with the lists.
        QCOMPARE(static_cast<const void *>(file.lists[0].tracks[5].title.constData()),
                 static_cast<const void *>(file.lists[1].tracks[5].title.constData()));
    }
};

QTEST_GUILESS_MAIN(EngineLibrary)
#include "tst_enginelibrary.moc"

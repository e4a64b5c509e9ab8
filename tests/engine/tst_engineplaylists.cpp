#include "Playlists/ArtistNames.h"
#include "Playlists/CsvPlaylist.h"
#include "Playlists/CsvReader.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/PlaylistCatalogue.h"
#include "Playlists/TextDecoding.h"
#include "Playlists/XspfPlaylist.h"
#include "engine/EngineHome.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

QList<qint64> linesOf(const ReadFile &file) {
    QList<qint64> lines;
    for (const ListWarning &warning : file.warnings) {
        lines += warning.line;
    }
    return lines;
}

QStringList titlesOf(const ReadFile &file) {
    QStringList titles;
    for (const ReadList &list : file.lists) {
        for (const ListedTrack &track : list.tracks) {
            titles += track.title;
        }
    }
    return titles;
}

} // namespace

class EnginePlaylists : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textIsDecodedByItsBytes_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("UTF-8") << QByteArray("caf\xC3\xA9");
        QTest::newRow("UTF-8 with mark") << QByteArray("\xEF\xBB\xBF"
                                                       "caf\xC3\xA9");
        QTest::newRow("Windows-1252") << QByteArray("caf\xE9");
        QTest::newRow("UTF-16 little") << QByteArray("\xFF\xFE"
                                                     "c\0a\0f\0\xE9\0",
                                                     10);
        QTest::newRow("UTF-16 big") << QByteArray("\xFE\xFF\0c\0a\0f\0\xE9", 10);
    }

    void textIsDecodedByItsBytes() {
        QFETCH(QByteArray, bytes);
        QCOMPARE(decodeText(bytes), u"caf\u00E9"_s);
    }

    void tablesAreReadInAllTheirForms_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<QStringList>>("records");
        const QList<QStringList> plain{{u"a"_s, u"b"_s}, {u"1"_s, u"2"_s}};
        QTest::newRow("comma") << u"a,b\n1,2\n"_s << plain;
        QTest::newRow("semicolon") << u"a;b\r\n1;2\r\n"_s << plain;
        QTest::newRow("tab") << u"a\tb\n1\t2"_s << plain;
        QTest::newRow("old line ends") << u"a,b\r1,2\r"_s << plain;
        QTest::newRow("told separator") << u"sep=;\na;b\n1;2\n"_s << plain;
        QTest::newRow("blank lines") << u"a,b\n\n\n1,2\n\n"_s << plain;
        QTest::newRow("separator in quotes")
            << u"\"a,a\";b\n1;2\n"_s << QList<QStringList>{{u"a,a"_s, u"b"_s}, {u"1"_s, u"2"_s}};
        QTest::newRow("line feed in quotes")
            << u"a,b\n\"1\n1\",2\n"_s << QList<QStringList>{{u"a"_s, u"b"_s}, {u"1\n1"_s, u"2"_s}};
        QTest::newRow("doubled quotes") << u"a,b\n\"say \"\"hi\"\"\",2\n"_s
                                        << QList<QStringList>{{u"a"_s, u"b"_s}, {u"say \"hi\""_s, u"2"_s}};
        QTest::newRow("quote inside") << u"a,b\n7\" mix,2\n"_s
                                      << QList<QStringList>{{u"a"_s, u"b"_s}, {u"7\" mix"_s, u"2"_s}};
        QTest::newRow("empty fields") << u"a,b\n,2\n"_s << QList<QStringList>{{u"a"_s, u"b"_s}, {QString(), u"2"_s}};
        QTest::newRow("nothing") << QString() << QList<QStringList>{};
    }

    void tablesAreReadInAllTheirForms() {
        QFETCH(QString, text);
        QFETCH(QList<QStringList>, records);
        QList<QStringList> read;
        for (const CsvRecord &record : readCsv(text)) {
            QVERIFY(!record.broken);
            read += record.fields;
        }
        QCOMPARE(read, records);
    }

    void anUnclosedQuoteCostsItsOwnLineOnly() {
        const ReadFile file = readCsvPlaylist("Track Name,Artist\nOne,Ann\n\"Two,Ann\nThree,Ann\nFour,Ann\n");
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"Three"_s, u"Four"_s}));
        QCOMPARE(linesOf(file), QList<qint64>{3});
        // The quote of a later line closes it, and the fields no longer fit.
        const ReadFile swallowed = readCsvPlaylist("Track Name,Artist\n\"One,Ann\nTwo,Ann\n\"Three\",Ann\n");
        QCOMPARE(titlesOf(swallowed), QStringList({u"Two"_s, u"Three"_s}));
        QCOMPARE(linesOf(swallowed), QList<qint64>{2});
    }

    void columnsAreFoundByName_data() {
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("exporter") << QByteArray(
            "Track Name,Artist Name(s),Album Name,Duration (ms),Album Image URL,ISRC");
        QTest::newRow("longer") << QByteArray(
            "track name,ARTIST NAME(S),album name,Track Duration (ms),album image url,isrc");
        QTest::newRow("German") << QByteArray(
            "Titelname,K\xC3\xBCnstlername(n),Albumname,Titeldauer (ms),Albumbild-URL,ISRC");
        QTest::newRow("French") << QByteArray("Nom du titre,Nom(s) de l'artiste,Nom de l'album,Dur\xC3\xA9"
                                              "e (ms),URL de l'image de l'album,ISRC");
        QTest::newRow("Spanish") << QByteArray(
            "Nombre de la canci\xC3\xB3n,Nombre(s) del artista,Nombre del \xC3\xA1lbum,Duraci\xC3\xB3n (ms),URL de la "
            "imagen del \xC3\xA1lbum,ISRC");
    }

    void columnsAreFoundByName() {
        QFETCH(QByteArray, header);
        const ReadFile file = readCsvPlaylist(header + "\nOne,Ann,LP,61500,https://x/1.jpg,ZZ1\n");
        QCOMPARE(file.warnings.size(), 0u);
        const ListedTrack &track = file.lists.at(0).tracks.at(0);
        QCOMPARE(track.title, u"One"_s);
        QCOMPARE(track.artist, u"Ann"_s);
        QCOMPARE(track.album, u"LP"_s);
        QCOMPARE(track.durationSec, 61.5);
        QCOMPARE(track.artworkUrl, u"https://x/1.jpg"_s);
        QCOMPARE(track.isrc, u"ZZ1"_s);
    }

    void durationsAreRead_data() {
        QTest::addColumn<QByteArray>("column");
        QTest::addColumn<QByteArray>("cell");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<int>("warnings");
        QTest::newRow("ms") << QByteArray("Duration (ms)") << QByteArray("61500") << 61.5 << 0;
        QTest::newRow("clock") << QByteArray("Time") << QByteArray("1:01") << 61.0 << 0;
        QTest::newRow("long clock") << QByteArray("Duration") << QByteArray("1:00:01") << 3'601.0 << 0;
        QTest::newRow("seconds") << QByteArray("Duration") << QByteArray("61") << 61.0 << 0;
        QTest::newRow("ms by size") << QByteArray("Duration") << QByteArray("215000") << 215.0 << 0;
        QTest::newRow("missing") << QByteArray("Duration (ms)") << QByteArray("") << 0.0 << 0;
        QTest::newRow("junk") << QByteArray("Duration (ms)") << QByteArray("soon") << 0.0 << 1;
        QTest::newRow("negative") << QByteArray("Duration (ms)") << QByteArray("-5") << 0.0 << 1;
    }

    void durationsAreRead() {
        QFETCH(QByteArray, column);
        QFETCH(QByteArray, cell);
        const ReadFile file = readCsvPlaylist("Track Name," + column + "\nOne," + cell + "\n");
        QTEST(file.lists.at(0).tracks.at(0).durationSec, "seconds");
        QTEST(static_cast<int>(file.warnings.size()), "warnings");
    }

    void brokenRowsAreToldByLineAndTheRestLoads() {
        const ReadFile file =
            readCsvPlaylist("Track Name,Artist\nOne,Ann\n,Ann\nTwo,Ann,too,many\nThree,Ann,,\nFour\n");
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"Three"_s, u"Four"_s}));
        QCOMPARE(linesOf(file), QList<qint64>({3, 4}));
    }

    void aTableWithoutTrackNamesIsToldAndGivesNoList() {
        for (const QByteArray &bytes : {QByteArray(), QByteArray("Date,Amount\n1,2\n"), QByteArray("\0\1\2\3", 4)}) {
            const ReadFile file = readCsvPlaylist(bytes);
            QVERIFY(file.lists.empty());
            QCOMPARE(file.warnings.size(), 1u);
        }
    }

    void oneFileMayHoldSeveralLists() {
        const ReadFile file = readCsvPlaylist("Playlist name,Track Name\nA,One\nB,Two\nA,Three\n");
        QCOMPARE(file.lists.size(), 2u);
        QCOMPARE(file.lists[0].name, u"A"_s);
        QCOMPARE(file.lists[0].tracks.size(), 2u);
        QCOMPARE(file.lists[1].tracks.at(0).title, u"Two"_s);
    }

    void artistsAreShown_data() {
        QTest::addColumn<QString>("cell");
        QTest::addColumn<QString>("shown");
        QTest::newRow("comma") << u"Ann, Bob"_s << u"Ann, Bob"_s;
        QTest::newRow("semicolon") << u"Ann;Bob"_s << u"Ann, Bob"_s;
        QTest::newRow("and") << u"Ann & Bob"_s << u"Ann & Bob"_s;
        QTest::newRow("escaped comma") << u"Tyler\\, The Second, Bob"_s << u"Tyler, The Second, Bob"_s;
        QTest::newRow("no space") << u"10,000 Bells"_s << u"10,000 Bells"_s;
        QTest::newRow("empty parts") << u"; Ann; ;"_s << u"Ann"_s;
    }

    void artistsAreShown() {
        QFETCH(QString, cell);
        QTEST(shownArtists(cell), "shown");
    }

    void anM3uListIsRead() {
        const ReadFile file =
            readM3uPlaylist("\xEF\xBB\xBF#EXTM3U\r\n#PLAYLIST:Mine\r\n#EXTINF:61,Ann - One - Live\r\nsub\\one.mp3\r\n"
                            "#EXTINF:-1 tvg-id=\"a,b\",Two\r\n/abs/two.mp3\r\n07 - Bob - Three_x.flac\r\n"
                            "#EXTINF:5,Cy - Four\r\n#EXTINF:6,Cy - Five\r\nfile:///f%20x/five.mp3\r\n"
                            "# a remark\r\nhttps://radio/stream\r\n",
                            u"/lists"_s);
        QCOMPARE(file.warnings.size(), 0u);
        QCOMPARE(file.lists.size(), 1u);
        QCOMPARE(file.lists[0].name, u"Mine"_s);
        const std::vector<ListedTrack> &tracks = file.lists[0].tracks;
        QCOMPARE(titlesOf(file),
                 QStringList({u"One - Live"_s, u"Two"_s, u"Three x"_s, u"Four"_s, u"Five"_s, u"stream"_s}));
        QCOMPARE(tracks[0].artist, u"Ann"_s);
        QCOMPARE(tracks[0].durationSec, 61.0);
        QCOMPARE(tracks[0].location, u"/lists/sub/one.mp3"_s);
        QCOMPARE(tracks[1].durationSec, 0.0);
        QCOMPARE(tracks[1].location, u"/abs/two.mp3"_s);
        QCOMPARE(tracks[2].artist, u"Bob"_s);
        QCOMPARE(tracks[3].location, QString());
        QCOMPARE(tracks[4].location, u"/f x/five.mp3"_s);
        QCOMPARE(tracks[5].location, QString());
    }

    void aBrokenDescriptionIsToldAndTheFileNameUsed() {
        const ReadFile file = readM3uPlaylist("#EXTM3U\n#EXTINF:what\nAnn - One.mp3\n", u"/l"_s);
        QCOMPARE(linesOf(file), QList<qint64>{2});
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
    }

    void anXspfListIsRead() {
        const ReadFile file = readXspfPlaylist(
            "<?xml version=\"1.0\"?><playlist version=\"1\" "
            "xmlns=\"http://xspf.org/ns/0/\"><title>Mine</title><trackList>"
            "<track><duration>61500</duration><location>file:///m/a%20b.mp3</location><title>One &amp; only</title>"
            "<creator>Ann</creator><album>LP</album><image>https://x/1.jpg</image><extension><title>no</title></"
            "extension></track>"
            "<track><location>sub/Bob - Two.mp3</location></track></trackList></playlist>",
            u"/l"_s);
        QCOMPARE(file.warnings.size(), 0u);
        QCOMPARE(file.lists.at(0).name, u"Mine"_s);
        QCOMPARE(titlesOf(file), QStringList({u"One & only"_s, u"Two"_s}));
        const ListedTrack &first = file.lists[0].tracks[0];
        QCOMPARE(first.artist, u"Ann"_s);
        QCOMPARE(first.album, u"LP"_s);
        QCOMPARE(first.durationSec, 61.5);
        QCOMPARE(first.location, u"/m/a b.mp3"_s);
        QCOMPARE(first.artworkUrl, u"https://x/1.jpg"_s);
        QCOMPARE(file.lists[0].tracks[1].artist, u"Bob"_s);
        QCOMPARE(file.lists[0].tracks[1].location, u"/l/sub/Bob - Two.mp3"_s);
    }

    void anXspfListThatBreaksOffGivesWhatCameBefore() {
        const ReadFile file =
            readXspfPlaylist("<playlist><trackList>\n<track><title>One</title></track>\n<track><tit", u"/l"_s);
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
        QCOMPARE(linesOf(file), QList<qint64>{3});
    }

    void entriesResolveToLocalPaths_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("path");
        QTest::newRow("beside") << u"a.mp3"_s << u"/l/a.mp3"_s;
        QTest::newRow("above") << u"../m/a.mp3"_s << u"/m/a.mp3"_s;
        QTest::newRow("backslashes") << u"m\\a.mp3"_s << u"/l/m/a.mp3"_s;
        QTest::newRow("drive") << u"C:\\m\\a.mp3"_s << QString();
        QTest::newRow("http") << u"http://x/a.mp3"_s << QString();
        QTest::newRow("percent stays in a path") << u"50%20.mp3"_s << u"/l/50%20.mp3"_s;
        QTest::newRow("file URL") << u"file:///m/%C3%A5.mp3"_s << u"/m/å.mp3"_s;
    }

    void entriesResolveToLocalPaths() {
        QFETCH(QString, entry);
        QTEST(resolvedLocation(entry, u"/l"_s), "path");
    }

    void idsAreStableUniqueAndFreeOfJoiningSigns() {
        static const QRegularExpression form(u"^(apple|spotify):[0-9a-f]+$"_s);
        const QString id = playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s);
        QVERIFY(form.match(id).hasMatch());
        QCOMPARE(playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s), id);
        QVERIFY(playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"d"_s) != id);
        QVERIFY(playlistId(PlaylistSourceId::spotify, u"/ab"_s, u".csv"_s, u"c#|,"_s) !=
                playlistId(PlaylistSourceId::spotify, u"/a"_s, u"b.csv"_s, u"c#|,"_s));
    }

    void foldersBecomeFoldersAndWarningsAreToldOnce() {
        const EngineHome home;
        home.addList(u"Top.csv"_s, {u"a|b|1"_s});
        home.addList(u"Sets/Same.csv"_s, {u"a|b|1"_s});
        home.addList(u"Other/Same.csv"_s, {u"a|b|1"_s});
        home.write(home.playlists(u"Sets/broken.csv"_s), "nothing\n");
        QVERIFY(QFile::link(home.playlists({}), home.playlists(u"Sets/round"_s)));
        QStringList warnings;
        PlaylistCatalogue catalogue(
            [&] {
                return PlaylistPlaces{{QDir::cleanPath(home.playlists({})), u"/nowhere"_s}};
            },
            [&](const QString &message) { warnings += message; }, [](const PlaylistSnapshot &) {});
        const auto snapshot = catalogue.refresh(std::chrono::seconds(20));
        QStringList shown;
        for (const Playlist &playlist : snapshot->playlists) {
            const Playlist *parent = snapshot->find(playlist.parentId);
            shown +=
                (parent ? parent->name + u'/' : QString()) + playlist.name + (playlist.isFolder ? u"/"_s : QString());
        }
        QCOMPARE(shown, QStringList({u"Other/"_s, u"Other/Same"_s, u"Sets/"_s, u"Sets/Same"_s, u"Top"_s}));
        QCOMPARE(snapshot->byId.size(), 5);
        QCOMPARE(warnings.size(), 1);
        QVERIFY(warnings[0].contains(u"broken.csv, line 1"_s));
        QVERIFY(snapshot->unreadable.contains(u"/nowhere"_s));
        catalogue.refresh(std::chrono::seconds(20));
        QCOMPARE(warnings.size(), 1);
        home.addList(u"Top.csv"_s, {u"a|b|1"_s, u"c|d|1"_s});
        const QString id = snapshot->playlists.back().id;
        QCOMPARE(catalogue.refresh(std::chrono::seconds(20))->find(id)->tracks->size(), 2u);
    }
};

QTEST_GUILESS_MAIN(EnginePlaylists)
#include "tst_engineplaylists.moc"

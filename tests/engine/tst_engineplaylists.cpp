#include "Playlists/ArtistNames.h"
#include "Playlists/CsvPlaylist.h"
#include "Playlists/CsvReader.h"
#include "Playlists/Location.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/TextReader.h"
#include "Playlists/XspfPlaylist.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

ReadFile csv(const QByteArray &bytes, ReadLimits limits = {}) {
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return readCsvPlaylist(device, limits);
}

ReadFile m3u(const QByteArray &bytes, const QString &folder, ReadLimits limits = {}) {
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return readM3uPlaylist(device, folder, limits);
}

ReadFile xspf(const QByteArray &bytes, const QString &folder, ReadLimits limits = {}) {
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return readXspfPlaylist(device, folder, limits);
}

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
        QTest::newRow("UTF-16 little without mark") << QByteArray("c\0a\0f\0\xE9\0", 8);
        QTest::newRow("UTF-16 big without mark") << QByteArray("\0c\0a\0f\0\xE9", 8);
    }

    void textIsDecodedByItsBytes() {
        QFETCH(QByteArray, bytes);
        QBuffer device(&bytes);
        device.open(QIODevice::ReadOnly);
        TextReader reader(device);
        QString text;
        while (reader.readMore(text)) {
        }
        QCOMPARE(text, u"caf\u00E9"_s);
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
        QTest::newRow("blank lines first") << u"\n\r\na;b\n1;2\n"_s << plain;
        QTest::newRow("told separator behind blanks") << u"\nsep=\t\na\tb\n1\t2\n"_s << plain;
        QTest::newRow("other separators in the cells")
            << u"a;b\n1,5;2\t2\n"_s << QList<QStringList>{{u"a"_s, u"b"_s}, {u"1,5"_s, u"2\t2"_s}};
        QTest::newRow("nothing") << QString() << QList<QStringList>{};
        QTest::newRow("a long way") << u"a,b\n1,2\n"_s + QString(100'000, u'\n') + u"1,2\n"_s
                                    << QList<QStringList>{plain[0], plain[1], plain[1]};
    }

    void tablesAreReadInAllTheirForms() {
        QFETCH(QString, text);
        QFETCH(QList<QStringList>, records);
        QList<QStringList> read;
        QBuffer device;
        device.setData(text.toUtf8());
        device.open(QIODevice::ReadOnly);
        CsvReader table(device);
        for (CsvRecord record; table.next(record);) {
            QVERIFY2(record.problem.isEmpty(), qPrintable(record.problem));
            read += record.fields;
        }
        QCOMPARE(read, records);
    }

    void anUnclosedQuoteCostsItsOwnLineOnly() {
        const ReadFile file = csv("Track Name,Artist\nOne,Ann\n\"Two,Ann\nThree,Ann\nFour,Ann\n");
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"Three"_s, u"Four"_s}));
        QCOMPARE(linesOf(file), QList<qint64>{3});
        // The quote of a later line closes it, and the fields no longer fit.
        const ReadFile swallowed = csv("Track Name,Artist\n\"One,Ann\nTwo,Ann\n\"Three\",Ann\n");
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
        const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text.toUtf8(); };
        row("Italian", u"Nome traccia,Nome artista,Nome album,Durata traccia (ms),URL immagine album,ISRC"_s);
        row("Portuguese",
            u"Nome da faixa,Nome do artista,Nome do álbum,Duração da faixa (ms),URL da imagem do álbum,ISRC"_s);
        row("Dutch", u"Naam van nummer,Naam van artiest,Naam van album,Duur (ms),Album Image URL,ISRC"_s);
        row("Swedish", u"Låtnamn,Artistnamn,Albumnamn,Längd (ms),Album Image URL,ISRC"_s);
        row("Polish", u"Nazwa utworu,Nazwa wykonawcy,Nazwa albumu,Czas trwania (ms),Album Image URL,ISRC"_s);
        row("Russian", u"Название трека,Имя исполнителя,Название альбома,Длительность (ms),Album Image URL,ISRC"_s);
        row("Japanese", u"トラック名,アーティスト名,アルバム名,再生時間 (ms),アルバム画像URL,ISRC"_s);
        row("joined by lines", u"track_name,artist_name,album_name,duration_ms,album_image_url,isrc"_s);
        row("quoted, with spaces",
            u"\"Track Name \",\" Artist Name(s)\",\"Album Name\",\"Duration (ms)\",\"Album Image URL\",ISRC"_s);
    }

    void columnsAreFoundByName() {
        QFETCH(QByteArray, header);
        const ReadFile file = csv(header + "\nOne,Ann,LP,61500,https://x/1.jpg,ZZ1\n");
        QCOMPARE(file.warnings.size(), 0u);
        const ListedTrack &track = file.lists.at(0).tracks.at(0);
        QCOMPARE(track.title, u"One"_s);
        QCOMPARE(track.artist, u"Ann"_s);
        QCOMPARE(track.album, u"LP"_s);
        QCOMPARE(track.durationSec, 61.5);
        QCOMPARE(track.artworkUrl, u"https://x/1.jpg"_s);
        QCOMPARE(track.isrc, u"ZZ1"_s);
    }

    void columnsAreFoundInAnyOrderAndUnknownOnesPassedOver() {
        const ReadFile file =
            csv("Added At,Duration (ms),Artist Name(s),Album Artist Name(s),Track URI,Track Name,Popularity\n"
                "2020,61500,Ann,Various,u:1,One,7\n");
        QCOMPARE(file.lists.at(0).tracks.at(0).title, u"One"_s);
        QCOMPARE(file.lists.at(0).tracks.at(0).artist, u"Ann"_s);
        QCOMPARE(file.lists.at(0).tracks.at(0).durationSec, 61.5);
    }

    void aRowWithoutANameIsToldWithItsAddress() {
        const ReadFile file = csv("Track URI,Track Name\nservice:track:7,\n");
        QCOMPARE(file.warnings.size(), 1u);
        QVERIFY(file.warnings[0].message.contains(u"service:track:7"_s));
    }

    void aQuoteThatIsNeverClosedInALargeTableCostsItsOwnLineOnly() {
        QByteArray text = "Track Name,Artist\n\"One,Ann\n";
        const QByteArray row = "Two,Ann\n";
        text += row.repeated(300'000); // more than a row may have
        const ReadFile file = csv(text);
        QCOMPARE(file.lists.at(0).tracks.size(), 300'000u);
        QCOMPARE(linesOf(file), QList<qint64>{2});
    }

    void aRowThatIsTooLongIsToldAndTheRestLoads() {
        const ReadFile file = csv("Track Name,Artist\nOne," + QByteArray(2'000'000, 'x') + "\nTwo,Ann\n");
        QCOMPARE(titlesOf(file), QStringList{u"Two"_s});
        QCOMPARE(linesOf(file), QList<qint64>{2});
        QVERIFY2(file.warnings[0].message.contains(u"more than 1000000 characters"_s),
                 qPrintable(file.warnings[0].message));
    }

    void mistakesWithoutEndAreCountedAndNotListed() {
        const ReadFile file = csv("Track Name,Artist\n" + QByteArray(",Ann\n").repeated(5'000) + "One,Ann\n");
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
        QCOMPARE(file.warnings.size(), 20u);
        QCOMPARE(file.moreWarnings, 4'980);
    }

    void aListBeyondTheLimitsIsCutAndSaysSo_data() {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QList<qint64>>("lines");
        QTest::newRow("csv") << u"csv"_s << QList<qint64>{4};
        QTest::newRow("m3u") << u"m3u"_s << QList<qint64>{3};
        QTest::newRow("xspf") << u"xspf"_s << QList<qint64>{4};
    }

    void aListBeyondTheLimitsIsCutAndSaysSo() {
        QFETCH(QString, form);
        const auto read = [&](const ReadLimits &limits) {
            return form == u"csv"_s   ? csv("Track Name\nOne\nTwo\nThree\nFour\n", limits)
                   : form == u"m3u"_s ? m3u("One\nTwo\nThree\nFour\n", u"/l"_s, limits)
                                      : xspf("<playlist><trackList>\n<track><title>One</title></track>\n"
                                             "<track><title>Two</title></track>\n<track><title>Three</title></track>\n"
                                             "<track><title>Four</title></track>\n</trackList></playlist>",
                                             u"/l"_s, limits);
        };
        ReadLimits limits;
        limits.tracks = 2;
        const ReadFile file = read(limits);
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"Two"_s}));
        QTEST(linesOf(file), "lines");
        QVERIFY(file.warnings[0].message.contains(u"more than 2 tracks"_s));
        QVERIFY(!file.whole);
        ReadLimits words;
        words.characters = 3;
        QVERIFY(!read(words).whole);
        QVERIFY(read({}).whole);
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
        const ReadFile file = csv("Track Name," + column + "\nOne," + cell + "\n");
        QTEST(file.lists.at(0).tracks.at(0).durationSec, "seconds");
        QTEST(static_cast<int>(file.warnings.size()), "warnings");
    }

    void brokenRowsAreToldByLineAndTheRestLoads() {
        const ReadFile file = csv("Track Name,Artist\nOne,Ann\n,Ann\nTwo,Ann,too,many\nThree,Ann,,\nFour\n");
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"Three"_s, u"Four"_s}));
        QCOMPARE(linesOf(file), QList<qint64>({3, 4}));
    }

    void aTableWithoutTrackNamesIsToldAndGivesNoList() {
        for (const QByteArray &bytes : {QByteArray(), QByteArray("Date,Amount\n1,2\n"), QByteArray("\0\1\2\3", 4)}) {
            const ReadFile file = csv(bytes);
            QVERIFY(file.lists.empty());
            QCOMPARE(file.warnings.size(), 1u);
        }
    }

    void oneFileMayHoldSeveralLists() {
        const ReadFile file = csv("Playlist name,Track Name\nA,One\nB,Two\nA,Three\n");
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
            m3u("\xEF\xBB\xBF#EXTM3U\r\n#PLAYLIST:Mine\r\n#EXTINF:61,Ann - One - Live\r\nsub\\one.mp3\r\n"
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

    void anM3uListOfAnyEncodingAndLineEndIsRead_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = u"#EXTM3U\n#PLAYLIST:Café\n#EXTINF:61,Ann - Été\nété.mp3\n"_s;
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("Latin-1") << text.toLatin1();
        const auto *units = reinterpret_cast<const char *>(text.utf16());
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE") + QByteArray(units, text.size() * 2);
        QTest::newRow("carriage returns") << text.toUtf8().replace('\n', '\r');
        QTest::newRow("both") << text.toUtf8().replace("\n", "\r\n");
        QTest::newRow("no last line end") << text.toUtf8().chopped(1);
    }

    void anM3uListOfAnyEncodingAndLineEndIsRead() {
        QFETCH(QByteArray, bytes);
        const ReadFile file = m3u(bytes, u"/l"_s);
        QCOMPARE(file.warnings.size(), 0u);
        QCOMPARE(file.lists.at(0).name, u"Café"_s);
        QCOMPARE(titlesOf(file), QStringList{u"Été"_s});
        QCOMPARE(file.lists[0].tracks[0].location, u"/l/été.mp3"_s);
    }

    void aLineWithoutEndIsCutAndTheRestLoads() {
        const ReadFile file = m3u("#EXTINF:1,One\n" + QByteArray(3'000'000, 'x') + "\ntwo.mp3\n", u"/l"_s);
        QCOMPARE(titlesOf(file), QStringList({u"One"_s, u"two"_s}));
        QVERIFY(file.lists[0].tracks[0].location.size() <= 1'000'010);
    }

    void aBrokenDescriptionIsToldAndTheFileNameUsed() {
        const ReadFile file = m3u("#EXTM3U\n#EXTINF:what\nAnn - One.mp3\n", u"/l"_s);
        QCOMPARE(linesOf(file), QList<qint64>{2});
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
    }

    void anXspfListIsRead() {
        const ReadFile file = xspf(
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

    void picturesOfAnXspfListAreFoundWhereverTheyAre() {
        const ReadFile file = xspf("<playlist><image>https://x/list.jpg</image><trackList>"
                                   "<track><title>One</title><image>covers/a%20b.jpg</image></track>"
                                   "<track><title>Two</title><image>file:///c/d.jpg</image></track>"
                                   "<track><title>Three</title></track></trackList></playlist>",
                                   u"/l"_s);
        QCOMPARE(file.lists.at(0).artwork, artworkOfUrlText(u"https://x/list.jpg"_s));
        QCOMPARE(file.lists[0].tracks[0].artworkUrl, u"file:///l/covers/a%20b.jpg"_s);
        QCOMPARE(file.lists[0].tracks[1].artworkUrl, u"file:///c/d.jpg"_s);
        QCOMPARE(file.lists[0].tracks[2].artworkUrl, QString());
    }

    void anXspfListWithAPrefixIsRead() {
        const ReadFile file = xspf("<x:playlist xmlns:x=\"http://xspf.org/ns/0/\"><x:trackList><x:track>"
                                   "<x:title>One</x:title></x:track></x:trackList></x:playlist>",
                                   u"/l"_s);
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
    }

    void anXspfTrackWithoutATitleKeepsItsArtist() {
        const ReadFile file = xspf("<playlist><trackList><track><creator>Cy</creator>"
                                   "<location>http://x/One.mp3</location></track></trackList></playlist>",
                                   u"/l"_s);
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
        QCOMPARE(file.lists[0].tracks[0].artist, u"Cy"_s);
        QCOMPARE(file.lists[0].tracks[0].location, QString());
    }

    void anXspfListThatBreaksOffGivesWhatCameBefore() {
        const ReadFile file = xspf("<playlist><trackList>\n<track><title>One</title></track>\n<track><tit", u"/l"_s);
        QCOMPARE(titlesOf(file), QStringList{u"One"_s});
        QCOMPARE(linesOf(file), QList<qint64>{3});
        QVERIFY(!file.whole);
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
        QTest::newRow("of this machine") << u"file://localhost/m/a.mp3"_s << u"/m/a.mp3"_s;
        QTest::newRow("of another machine") << u"file://server/m/a.mp3"_s << QString();
        QTest::newRow("short") << u"file:/m/a.mp3"_s << u"/m/a.mp3"_s;
        QTest::newRow("capitals") << u"FILE:///m/a.mp3"_s << u"/m/a.mp3"_s;
        QTest::newRow("signs of URLs as they are") << u"file:///m/a #1?.mp3"_s << u"/m/a #1?.mp3"_s;
        QTest::newRow("percent that escapes nothing") << u"file:///m/100%.mp3"_s << u"/m/100%.mp3"_s;
        QTest::newRow("no path") << u"file://"_s << QString();
        QTest::newRow("relative URL") << u"file:a.mp3"_s << QString();
        QTest::newRow("escaped zero") << u"file:///m/a%00.mp3"_s << QString();
        QTest::newRow("share") << u"\\\\server\\m\\a.mp3"_s << QString();
        QTest::newRow("above, with backslashes") << u"..\\m\\a.mp3"_s << u"/m/a.mp3"_s;
    }

    void entriesResolveToLocalPaths() {
        QFETCH(QString, entry);
        QTEST(resolvedLocation(entry, u"/l"_s), "path");
    }
};

QTEST_GUILESS_MAIN(EnginePlaylists)
#include "tst_engineplaylists.moc"

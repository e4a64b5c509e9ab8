#include "Playlists/CsvPlaylist.h"
#include "Playlists/M3uPlaylist.h"
#include "Playlists/RowIdentity.h"
#include "Playlists/TextReader.h"
#include "Playlists/XspfPlaylist.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

class File : public QBuffer {
public:
    explicit File(const QByteArray &bytes) {
        setData(bytes);
        open(QIODevice::ReadOnly);
    }
};

ReadFile csv(const QByteArray &bytes, ReadLimits limits = {}) {
    File device(bytes);
    return readCsvPlaylist(device, limits);
}

ReadFile m3u(const QByteArray &bytes, ReadLimits limits = {}) {
    File device(bytes);
    return readM3uPlaylist(device, u"/l"_s, limits);
}

ReadFile xspf(const QByteArray &bytes) {
    File device(bytes);
    return readXspfPlaylist(device, u"/l"_s);
}

QList<double> lengthsIn(const ReadFile &file) {
    QList<double> lengths;
    for (const ListedTrack &track : file.lists.front().tracks) {
        lengths += track.durationSec;
    }
    return lengths;
}

} // namespace

/// Lists as no program writes them.
class EngineOddLists : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLengthThatNoTrackHasIsUnknown() {
        QCOMPARE(
            lengthsIn(m3u("#EXTINF:" + QByteArray(400, '9') + ",One\n1.mp3\n#EXTINF:1000001,Two\n#EXTINF:1000000,T")),
            (QList<double>{0, 0, 1'000'000}));
        QCOMPARE(lengthsIn(csv("Title,Duration\nOne,1e300\nTwo,1e308:0\nThree,1000000001\nFour,1000000000\n")),
                 (QList<double>{0, 0, 0, 1'000'000}));
        QCOMPARE(lengthsIn(xspf("<playlist><trackList><track><title>1</title><duration>1e308</duration></track>"
                                "<track><title>2</title><duration>1e9</duration></track></trackList></playlist>")),
                 (QList<double>{0, 1'000'000}));
    }

    void anEntryWithoutANameIsLeftOutAndTold() {
        const ReadFile file = m3u("music/\nOne.mp3\n___.mp3\n");
        QCOMPARE(file.lists.front().tracks.size(), std::size_t(1));
        QCOMPARE(file.warnings, (std::vector<ListWarning>{{1, u"names neither a title nor a file and is left out"_s},
                                                          {3, u"names neither a title nor a file and is left out"_s}}));
    }

    void whyAListIsCutIsToldHoweverManyWarningsThereAre() {
        const ReadFile file = csv("Title,Duration\n" + QByteArray(",1\n").repeated(30) + "One,1\nTwo,2\n", {1, 100});
        QVERIFY(!file.whole);
        QCOMPARE(file.warnings.back().line, 33);
        QVERIFY(file.warnings.back().message.startsWith(u"holds more than 1 tracks"_s));
        QCOMPARE(file.moreWarnings, 10);
    }

    void whyAListIsCutIsTheLastThatIsTold() {
        const ReadFile file = m3u("#EXTINF:1,One\n#EXTINF:1,Two\n#EXTINF:broken\n", {1, 100});
        QVERIFY(!file.whole);
        QCOMPARE(file.warnings.size(), std::size_t(1));
    }

    void whatStandsBehindAListMustBeXmlToo() {
        QVERIFY(xspf("<playlist><trackList/></playlist>\n<!-- the end -->\n").whole);
        const ReadFile file =
            xspf("<playlist><trackList><track><title>One</title></track></trackList></playlist>\n<x/>");
        QVERIFY(!file.whole);
        QCOMPARE(file.lists.front().tracks.size(), std::size_t(1));
    }

    void halfALetterAtTheEndIsNoText() {
        File device("\xFF\xFE"
                    "a");
        TextReader reader(device);
        QString text;
        QVERIFY(!reader.readMore(text));
        QVERIFY(m3u("\xFF\xFE"
                    "a")
                    .lists.front()
                    .tracks.empty());
        QVERIFY(csv("\xFF\xFE"
                    "a")
                    .lists.empty());
    }

    void keysOfEarlierVersionsMayTellAnyLength() {
        const QString key = u"ab:-9223372036854775808"_s;
        QVERIFY(mayBeOneRecording(key, key));
        QVERIFY(!mayBeOneRecording(key, u"ab:9223372036854775807"_s));
        QVERIFY(mayBeOneRecording(u"ab:200"_s, u"ab:204"_s));
        QVERIFY(!mayBeOneRecording(u"ab:200"_s, u"ab:205"_s));
    }
};

QTEST_APPLESS_MAIN(EngineOddLists)
#include "tst_engineoddlists.moc"

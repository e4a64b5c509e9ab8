#include "Matching/Fold.h"
#include "Matching/Matcher.h"
#include "Matching/Similarity.h"
#include "Matching/TitleParse.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

AudioFile fileOf(const QString &artist, const QString &title, double seconds, const QString &path = {}) {
    AudioFile file;
    file.path = path.isEmpty() ? u"/c/"_s + artist + u'-' + title + QString::number(seconds) : path;
    file.artist = artist;
    file.title = title;
    file.durationSec = seconds;
    file.format = u"MP3"_s;
    file.bitrateKbps = 192;
    return file;
}

MatchPreferences everything() {
    MatchPreferences preferences;
    preferences.sources = allCases<SourceId>();
    return preferences;
}

} // namespace

class EngineMatching : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spellingsFoldTogether_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("case") << u"Night DRIVE"_s << u"night drive"_s << true;
        QTest::newRow("sharp s") << u"Straße"_s << u"STRASSE"_s << true;
        QTest::newRow("accents") << u"Beyoncé"_s << u"Beyonce"_s << true;
        QTest::newRow("decomposed") << u"Bjo\u0308rk"_s << u"Bj\u00F6rk"_s << true;
        QTest::newRow("Nordic") << u"Mø Ærø Đorđe"_s << u"Mo Aero Dorde"_s << true;
        QTest::newRow("Polish, French") << u"Łódź cœur"_s << u"Lodz coeur"_s << true;
        QTest::newRow("Icelandic") << u"Þór við"_s << u"Thor vid"_s << true;
        QTest::newRow("Turkish") << u"Işık İZMİR"_s << u"isik izmir"_s << true;
        QTest::newRow("Greek") << u"Ελλάς"_s << u"ελλασ"_s << true;
        QTest::newRow("Cyrillic") << u"Ёлка"_s << u"елка"_s << true;
        QTest::newRow("quotes") << u"Don’t “go”"_s << u"Don't \"go\""_s << true;
        QTest::newRow("dashes") << u"A – B — C"_s << u"A - B - C"_s << true;
        QTest::newRow("and") << u"You & Me + Us"_s << u"you and me and us"_s << true;
        QTest::newRow("full width") << u"ＡＢＣ　１２"_s << u"abc 12"_s << true;
        QTest::newRow("ligature") << u"ﬁne"_s << u"fine"_s << true;
        QTest::newRow("Japanese keeps its marks") << u"が"_s << u"か"_s << false;
        QTest::newRow("Japanese composed") << u"か\u3099"_s << u"が"_s << true;
        QTest::newRow("no transliteration") << u"東京"_s << u"Tokyo"_s << false;
        QTest::newRow("Hindi keeps its marks") << u"कि"_s << u"क"_s << false;
    }

    void spellingsFoldTogether() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, equal);
        QCOMPARE(fold(a) == fold(b), equal);
        QCOMPARE(fold(fold(a)), fold(a));
    }

    void wordsAreJoinedByApostrophesAndParted() {
        QCOMPARE(wordsOf(fold(u"Don't stop-now (it's 5!)"_s)),
                 QStringList({u"dont"_s, u"stop"_s, u"now"_s, u"its"_s, u"5"_s}));
        QCOMPARE(wordsOf(fold(u"!!!"_s)), QStringList{u"!!!"_s});
        QCOMPARE(wordsOf(QString()), QStringList());
    }

    void titlesComeApart_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("core");
        QTest::addColumn<QStringList>("featured");
        QTest::addColumn<QStringList>("version");
        const QStringList none;
        QTest::newRow("plain") << u"Night Drive"_s << u"night drive"_s << none << none;
        QTest::newRow("feat.") << u"Song feat. Ono"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("(ft)") << u"Song (ft Ono & Kai)"_s << u"song"_s << QStringList{u"ono"_s, u"kai"_s} << none;
        QTest::newRow("[featuring]") << u"Song [featuring Ono]"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("(with)") << u"Song (with Ono)"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("with outside") << u"Song with Ono"_s << u"song with ono"_s << none << none;
        QTest::newRow("no whole word") << u"Feather"_s << u"feather"_s << none << none;
        for (const char *neutral :
             {"Remastered", "Remaster", "2011 Remaster", "Remastered 2011", "Digitally Remastered", "Original Mix",
              "Original Version", "Single Version", "Album Version", "Mono", "Stereo", "Mono Version", "Explicit",
              "Bonus Track", "Deluxe", "Deluxe Edition", "Official Audio", "Official Video", "Official Music Video"}) {
            const QString remark = QString::fromLatin1(neutral);
            QTest::newRow(qPrintable(u"(%1)"_s.arg(remark))) << u"Song (%1)"_s.arg(remark) << u"song"_s << none << none;
            QTest::newRow(qPrintable(u"- "_s + remark)) << u"Song - "_s + remark << u"song"_s << none << none;
        }
        QTest::newRow("remix") << u"Song (Kai Remix)"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        QTest::newRow("- remix") << u"Song - Kai Remix"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        for (const char *version :
             {"Mix", "Edit", "Extended", "Club", "Dub", "VIP", "Bootleg", "Mashup", "Rework", "Live", "Unplugged",
              "Acoustic", "Instrumental", "Karaoke", "Cover", "Demo", "Slowed"}) {
            const QString remark = QString::fromLatin1(version);
            QTest::newRow(version) << u"Song (%1)"_s.arg(remark) << u"song"_s << none << QStringList{remark.toLower()};
        }
        QTest::newRow("a cappella") << u"Song (A Cappella)"_s << u"song"_s << none << QStringList{u"acappella"_s};
        QTest::newRow("acapella") << u"Song (Acapella)"_s << u"song"_s << none << QStringList{u"acappella"_s};
        QTest::newRow("sped up") << u"Song (Sped Up)"_s << u"song"_s << none << QStringList{u"sped"_s, u"up"_s};
        QTest::newRow("both") << u"Song - Live - Remastered 2009"_s << u"song"_s << none << QStringList{u"live"_s};
        QTest::newRow("live word in a title") << u"Live Forever"_s << u"live forever"_s << none << none;
        QTest::newRow("bracketed title") << u"(I Can't) Sleep"_s << u"i cant sleep"_s << none << none;
        QTest::newRow("dash in a title") << u"A - B"_s << u"a b"_s << none << none;
        QTest::newRow("all remark") << u"(Live)"_s << u"live"_s << none << QStringList{u"live"_s};
        QTest::newRow("unclosed") << u"Song (Kai Remix"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        QTest::newRow("all at once") << u"Song (feat. Ono) [Extended Mix] - 2012 Remaster"_s << u"song"_s
                                     << QStringList{u"ono"_s} << QStringList{u"extended"_s, u"mix"_s};
    }

    void titlesComeApart() {
        QFETCH(QString, title);
        const ParsedTitle parsed = parseTitle(title);
        QTEST(parsed.core, "core");
        QTEST(parsed.featured, "featured");
        QTEST(parsed.version, "version");
    }

    void numbersAreFound_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("numbers");
        QTest::newRow("Pt. 1") << u"Suite (Pt. 1)"_s << QStringList{u"1"_s};
        QTest::newRow("Part Two") << u"Suite, Part Two"_s << QStringList{u"2"_s};
        QTest::newRow("pt ii") << u"Suite Pt II"_s << QStringList{u"2"_s};
        QTest::newRow("none") << u"I Will"_s << QStringList{};
        QTest::newRow("plain") << u"99 Bells"_s << QStringList{u"99"_s};
    }

    void numbersAreFound() {
        QFETCH(QString, title);
        QTEST(parseTitle(title).numbers, "numbers");
    }

    void artistsComeApart_data() {
        QTest::addColumn<QString>("artists");
        QTest::addColumn<QStringList>("list");
        QTest::newRow("comma") << u"Ono, Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("&") << u"Ono & Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("semicolon") << u"Ono; Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("feat.") << u"Ono feat. Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("the") << u"The Bells"_s << QStringList{u"bells"_s};
        QTest::newRow("and inside a word") << u"Sandra"_s << QStringList{u"sandra"_s};
    }

    void artistsComeApart() {
        QFETCH(QString, artists);
        QTEST(foldedArtists(artists), "list");
    }

    void similarityIsOneMinusDistanceOverLength() {
        QCOMPARE(similarity(u"", u""), 1.0);
        QCOMPARE(similarity(u"abc", u""), 0.0);
        QCOMPARE(similarity(u"kitten", u"sitting"), 1 - 3.0 / 7);
        QCOMPARE(wordSimilarity(Phrase(u"drive night"_s), Phrase(u"night drive"_s)), 1.0);
    }

    void lengthCountsFullyUpToFourSecondsAndNotFromTwenty_data() {
        QTest::addColumn<double>("delta");
        QTest::addColumn<double>("total");
        QTest::newRow("0") << 0.0 << 1.0;
        QTest::newRow("4") << 4.0 << 1.0;
        QTest::newRow("12") << 12.0 << (0.75 + 0.20 * 0.5) / 0.95;
        QTest::newRow("20") << 20.0 << 0.75 / 0.95;
        QTest::newRow("60") << 60.0 << 0.75 / 0.95;
    }

    void lengthCountsFullyUpToFourSecondsAndNotFromTwenty() {
        QFETCH(double, delta);
        QFETCH(double, total);
        const Score score =
            scoreOf(makeProbe(u"Song"_s, u"Ono"_s, {}, 200, {}), makeProbe(u"Song"_s, u"Ono"_s, {}, 200 + delta, {}));
        QVERIFY(qAbs(score.total - total) < 1e-9);
    }

    void onlyPresentFieldsCount() {
        const Score bare =
            scoreOf(makeProbe(u"Song"_s, {}, {}, 0, {}), makeProbe(u"Song"_s, u"Ono"_s, u"LP"_s, 200, {}));
        QCOMPARE(bare.total, 1.0);
        QVERIFY(!bare.artist && !bare.lengthDelta);
        const Score album = scoreOf(makeProbe(u"Song"_s, u"Ono"_s, u"abcd"_s, 200, {}),
                                    makeProbe(u"Song"_s, u"Ono"_s, u"wxyz"_s, 200, {}));
        QVERIFY(qAbs(album.total - 0.95) < 1e-9);
    }

    void rowsAreJudged_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("artist");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<int>("band"); // of one file: "Night Drive" by "Mira Holt", 200 s
        QTest::addColumn<QString>("reason");
        const int accepted = static_cast<int>(MatchResult::Band::Accepted);
        const int doubtful = static_cast<int>(MatchResult::Band::Doubtful);
        const int missing = static_cast<int>(MatchResult::Band::Missing);
        QTest::newRow("same") << u"Night Drive"_s << u"Mira Holt"_s << 200.0 << accepted << QString();
        QTest::newRow("remastered") << u"Night Drive - 2011 Remaster"_s << u"Mira Holt"_s << 200.0 << accepted
                                    << QString();
        QTest::newRow("featured artist more")
            << u"Night Drive"_s << u"Mira Holt, Ono"_s << 200.0 << accepted << QString();
        QTest::newRow("typo") << u"Nihgt Drive"_s << u"Mira Holt"_s << 200.0 << accepted << QString();
        QTest::newRow("no length") << u"Night Drive"_s << u"Mira Holt"_s << 0.0 << accepted << QString();
        QTest::newRow("another version") << u"Night Drive (Live)"_s << u"Mira Holt"_s << 200.0 << doubtful
                                         << u"Not the wanted version: live"_s;
        QTest::newRow("10 s off") << u"Night Drive"_s << u"Mira Holt"_s << 210.0 << accepted << QString();
        QTest::newRow("11 s off") << u"Night Drive"_s << u"Mira Holt"_s << 211.0 << doubtful
                                  << u"Length differs by 11 s"_s;
        QTest::newRow("another number") << u"Night Drive 2"_s << u"Mira Holt"_s << 200.0 << doubtful
                                        << u"Another number in the title"_s;
        QTest::newRow("no artist") << u"Night Drive"_s << QString() << 200.0 << doubtful << u"The artist isn't known"_s;
        QTest::newRow("another artist") << u"Night Drive"_s << u"Zbigniew"_s << 200.0 << missing << QString();
        QTest::newRow("another title") << u"Morning Ferry"_s << u"Mira Holt"_s << 200.0 << missing << QString();
    }

    void rowsAreJudged() {
        QFETCH(QString, title);
        QFETCH(QString, artist);
        QFETCH(double, seconds);
        const MatchIndex index({fileOf(u"Mira Holt"_s, u"Night Drive"_s, 200), fileOf(u"Else"_s, u"Other"_s, 90)});
        const MatchResult result = findMatch(makeProbe(title, artist, {}, seconds, {}), index, everything());
        QTEST(static_cast<int>(result.band), "band");
        QTEST(result.candidates.empty() ? QString() : result.candidates.front().reason, "reason");
    }

    void anEqualIsrcIsTakenUnlessTheLengthsDiffer_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("20 s") << 220.0 << true;
        QTest::newRow("21 s") << 221.0 << false;
    }

    void anEqualIsrcIsTakenUnlessTheLengthsDiffer() {
        QFETCH(double, seconds);
        AudioFile file = fileOf(u"J. V."_s, u"JV004 master"_s, 200);
        file.isrc = u"zz-z99-17-00004"_s;
        const MatchIndex index({file});
        const MatchResult result = findMatch(
            makeProbe(u"Pantry Door"_s, u"Junia Vale"_s, {}, seconds, u"ZZZ991700004"_s), index, everything());
        QTEST(result.band == MatchResult::Band::Accepted, "accepted");
    }

    void twoDifferentRecordingsThatFitEquallyAreLeftToTheUser() {
        const MatchIndex index(
            {fileOf(u"Mira Holt"_s, u"Night Drive"_s, 196), fileOf(u"Mira Holt"_s, u"Night Drive"_s, 204)});
        const MatchResult result =
            findMatch(makeProbe(u"Night Drive"_s, u"Mira Holt"_s, {}, 200, {}), index, everything());
        QCOMPARE(result.band, MatchResult::Band::Doubtful);
        QCOMPARE(result.candidates.size(), 2u);
        QCOMPARE(result.candidates[0].reason, u"Two recordings fit about equally well"_s);
    }

    void theBestCopyOfOneRecordingIsTaken() {
        AudioFile low = fileOf(u"Ono"_s, u"Song"_s, 200, u"/c/1.mp3"_s);
        AudioFile high = fileOf(u"Ono"_s, u"Song"_s, 201, u"/c/2.mp3"_s);
        high.bitrateKbps = 320;
        AudioFile lossless = fileOf(u"Ono"_s, u"Song"_s, 202, u"/c/3.flac"_s);
        lossless.lossless = true;
        const Probe row = makeProbe(u"Song"_s, u"Ono"_s, {}, 200, {});
        const auto chosen = [&](const std::vector<AudioFile> &files, const MatchPreferences &preferences) {
            const MatchIndex index(files);
            const MatchResult result = findMatch(row, index, preferences);
            return result.candidates.empty() ? QString() : index.file(result.candidates.front().position).path;
        };
        MatchPreferences preferences = everything();
        QCOMPARE(chosen({low, high, lossless}, preferences), lossless.path);
        QCOMPARE(chosen({low, high}, preferences), high.path);
        low.bitrateKbps = high.bitrateKbps;
        low.origin = SourceId::youtube;
        high.origin = SourceId::soulseek;
        QCOMPARE(chosen({low, high}, preferences), high.path);
        preferences.sources = {SourceId::youtube, SourceId::soulseek};
        QCOMPARE(chosen({low, high}, preferences), low.path);
        preferences.sources = {SourceId::soulseek};
        QCOMPARE(chosen({low}, preferences), QString());
        low.origin.reset();
        QCOMPARE(chosen({low}, preferences), low.path);
    }

    void theFloorShutsFilesOutBeforeScoring_data() {
        QTest::addColumn<int>("floor");
        QTest::addColumn<bool>("losslessOnly");
        QTest::addColumn<int>("kbps"); // 0: lossless
        QTest::addColumn<bool>("allowed");
        const int flac = static_cast<int>(QualityFloor::flac);
        const int high = static_cast<int>(QualityFloor::mp3_320);
        const int any = static_cast<int>(QualityFloor::any);
        QTest::newRow("any, 64") << any << false << 64 << true;
        QTest::newRow("320, 256") << high << false << 256 << false;
        QTest::newRow("320, 320") << high << false << 320 << true;
        QTest::newRow("320, lossless") << high << false << 0 << true;
        QTest::newRow("flac, 320") << flac << false << 320 << false;
        QTest::newRow("flac, lossless") << flac << false << 0 << true;
        QTest::newRow("lossless only, 320") << any << true << 320 << false;
        QTest::newRow("lossless only, lossless") << any << true << 0 << true;
    }

    void theFloorShutsFilesOutBeforeScoring() {
        QFETCH(int, floor);
        QFETCH(bool, losslessOnly);
        QFETCH(int, kbps);
        AudioFile file = fileOf(u"Ono"_s, u"Song"_s, 200);
        file.bitrateKbps = kbps;
        file.lossless = kbps == 0;
        MatchPreferences preferences = everything();
        preferences.floor = static_cast<QualityFloor>(floor);
        preferences.losslessOnly = losslessOnly;
        const MatchResult result =
            findMatch(makeProbe(u"Song"_s, u"Ono"_s, {}, 200, {}), MatchIndex({file}), preferences);
        QTEST(result.band == MatchResult::Band::Accepted, "allowed");
        QCOMPARE(result.shutOut, result.band == MatchResult::Band::Accepted ? 0 : 1);
    }

    void theScorerSeesAtMostTwoHundredOfManyFilesAndTheRightOne() {
        std::vector<AudioFile> files;
        for (int i = 0; i < 20'000; ++i) {
            files.push_back(fileOf(u"Prolific"_s, u"Common song number %1"_s.arg(i), 100 + i % 300, u"/c/%1"_s.arg(i)));
        }
        files.push_back(fileOf(u"東京"_s, u"夜のドライブ"_s, 200, u"/c/wanted"_s));
        const MatchIndex index(std::move(files));
        const auto all = [](const AudioFile &) { return true; };
        const std::vector<int> alike =
            index.candidates(makeProbe(u"Common song number"_s, u"Prolific"_s, {}, 177, {}), all);
        QCOMPARE(alike.size(), static_cast<std::size_t>(MatchIndex::maxCandidates));
        const std::vector<int> exact =
            index.candidates(makeProbe(u"Common song number 77"_s, u"Prolific"_s, {}, 177, {}), all);
        QCOMPARE(index.file(exact.front()).path, u"/c/77"_s);
        const std::vector<int> japanese = index.candidates(makeProbe(u"夜のドライヴ"_s, u"東京"_s, {}, 200, {}), all);
        QCOMPARE(index.file(japanese.front()).path, u"/c/wanted"_s);
    }
};

QTEST_GUILESS_MAIN(EngineMatching)
#include "tst_enginematching.moc"

#include "Matching/Matcher.h"
#include "Matching/Similarity.h"

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
        QTest::newRow("half an artist") << u"Night Drive"_s << u"Mira Holst-Berg"_s << 200.0 << doubtful
                                        << u"Another artist"_s;
        QTest::newRow("a bare version word")
            << u"Night Drive Live"_s << u"Mira Holt"_s << 200.0 << doubtful << u"Not the wanted version: live"_s;
        QTest::newRow("half a title") << u"Night Drive Home"_s << u"Mira Holt"_s << 200.0 << doubtful
                                      << u"The title fits only in part"_s;
        QTest::newRow("9 s off and another spelling")
            << u"Night Drives"_s << u"Mira Holtz"_s << 209.0 << doubtful << u"Length differs by 9 s"_s;
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

    void anEqualIsrcGoesBeforeAnyLikeness() {
        AudioFile odd = fileOf(u"J. V."_s, u"JV004 master"_s, 201, u"/c/odd"_s);
        odd.isrc = u"ZZZ991700004"_s;
        const MatchIndex index({fileOf(u"Junia Vale"_s, u"Pantry Door"_s, 200, u"/c/alike"_s), odd});
        const MatchResult result =
            findMatch(makeProbe(u"Pantry Door"_s, u"Junia Vale"_s, {}, 200, u"ZZZ991700004"_s), index, everything());
        QCOMPARE(result.band, MatchResult::Band::Accepted);
        QCOMPARE(index.file(result.candidates.front().position).path, odd.path);
    }

    void theLeadOverTheNextRecordingIsFiveHundredths_data() {
        QTest::addColumn<double>("seconds"); // of the other recording; each second beyond 4 costs 0.2 / 16 / 0.95
        QTest::addColumn<bool>("accepted");
        QTest::newRow("7 s: 0.039") << 207.0 << false;
        QTest::newRow("8 s: 0.053") << 208.0 << true;
    }

    void theLeadOverTheNextRecordingIsFiveHundredths() {
        QFETCH(double, seconds);
        const MatchIndex index(
            {fileOf(u"Mira Holt"_s, u"Night Drive"_s, 200), fileOf(u"Mira Holt"_s, u"Night Drive"_s, seconds)});
        const MatchResult result =
            findMatch(makeProbe(u"Night Drive"_s, u"Mira Holt"_s, {}, 200, {}), index, everything());
        QTEST(result.band == MatchResult::Band::Accepted, "accepted");
        for (const MatchCandidate &candidate : result.candidates) {
            QCOMPARE(candidate.reason.isEmpty(), result.band == MatchResult::Band::Accepted);
        }
    }

    void aFileWithoutAnArtistDoesNotHideTheOneWithIt() {
        const MatchIndex index(
            {fileOf({}, u"Night Drive"_s, 200, u"/a"_s), fileOf(u"Mira Holt"_s, u"Night Drive"_s, 200, u"/b"_s)});
        const MatchResult result =
            findMatch(makeProbe(u"Night Drive"_s, u"Mira Holt"_s, {}, 200, {}), index, everything());
        QCOMPARE(result.band, MatchResult::Band::Accepted);
        QCOMPARE(index.file(result.candidates.front().position).path, u"/b"_s);
    }

    void aBetterFileOfNearlyTheSameNameIsNoCopy() {
        AudioFile other = fileOf(u"Mira Holt"_s, u"Give Me Your Life Tonight"_s, 203, u"/other.flac"_s);
        other.lossless = true;
        const Probe row = makeProbe(u"Give Me Your Love Tonight"_s, u"Mira Holt"_s, {}, 200, {});
        const MatchIndex index({fileOf(u"Mira Holt"_s, u"Give Me Your Love Tonight"_s, 200, u"/right.mp3"_s), other});
        const MatchResult result = findMatch(row, index, everything());
        QCOMPARE(index.file(result.candidates.front().position).path, u"/right.mp3"_s);
    }

    void withoutBestQualityTheClosestCopyIsTaken() {
        AudioFile lossless = fileOf(u"Ono"_s, u"Song"_s, 206, u"/c/1.flac"_s);
        lossless.lossless = true;
        const MatchIndex index({lossless, fileOf(u"Ono"_s, u"Song"_s, 202, u"/c/2.mp3"_s)});
        MatchPreferences preferences = everything();
        const auto taken = [&] {
            return index
                .file(findMatch(makeProbe(u"Song"_s, u"Ono"_s, {}, 200, {}), index, preferences)
                          .candidates.front()
                          .position)
                .path;
        };
        QCOMPARE(taken(), u"/c/1.flac"_s);
        preferences.bestQuality = false;
        QCOMPARE(taken(), u"/c/2.mp3"_s);
    }

    void whatIsShutOutTakesNoPlaceAmongTheCandidates() {
        std::vector<AudioFile> files;
        for (int i = 0; i < 300; ++i) {
            files.push_back(fileOf(u"Ono"_s, u"Song"_s, 200, u"/c/%1"_s.arg(i)));
        }
        files.push_back(fileOf(u"Ono"_s, u"Song"_s, 203, u"/c/wanted"_s));
        files.back().lossless = true;
        MatchPreferences preferences = everything();
        preferences.losslessOnly = true;
        const MatchResult result =
            findMatch(makeProbe(u"Song"_s, u"Ono"_s, {}, 200, {}), MatchIndex(files), preferences);
        QCOMPARE(result.candidates.size(), 1u);
        QCOMPARE(result.candidates.front().position, 300);
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

#include "Styling/Measures.h"
#include "Views/PlaylistGroupHeader.h"
#include "Views/SummaryTexts.h"
#include "Views/TrackColumns.h"
#include "Views/TrackStatusFace.h"

#include <QFontMetricsF>
#include <QTest>
#include <QTranslator>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Kind = TrackStatusFace::Kind;

class ViewTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Q_INIT_RESOURCE(translations);
        QVERIFY(m_english.load(u":/zelk/i18n/zelk_en.qm"_s));
        QCoreApplication::installTranslator(&m_english);
    }

    void statusFaces_data() {
        QTest::addColumn<TrackState>("state");
        QTest::addColumn<TrackStatusFace>("face");
        const auto row = [](const char *name, const TrackState &state, const TrackStatusFace &face) {
            QTest::newRow(name) << state << face;
        };
        const auto pill = [](const char *text, const char *symbol, Ink ink) {
            const QString said = QString::fromLatin1(text);
            return TrackStatusFace{Kind::pill, said, said, QString::fromLatin1(symbol), ink, 0};
        };
        row("queued", TrackState::queued(), pill("Queued", "circle", Ink::secondary));
        row("checking", TrackState::checkingDisk(),
            {Kind::checking, u"Checking disk"_s, u"Checking disk"_s, {}, Ink::secondary, 0});
        row("present", TrackState::present(), pill("On disk", "checkmark.seal.fill", Ink::green));
        row("done", TrackState::done(Finish::ok), pill("Done", "checkmark.circle.fill", Ink::green));
        row("low confidence offers no review", TrackState::done(Finish::lowConfidence),
            pill("Low confidence", "exclamationmark.triangle.fill", Ink::orange));
        row("done as failed offers no retry", TrackState::done(Finish::failed),
            pill("Failed", "xmark.circle.fill", Ink::red));
        row("skipped", TrackState::done(Finish::skipped), pill("Skipped", "minus.circle", Ink::secondary));
        row("failed", TrackState::failed(u"No match found"_s),
            {Kind::failed, u"No match found"_s, u"No match found"_s, u"xmark.circle.fill"_s, Ink::red, 0});
        row("review", TrackState::awaitingReview({}),
            {Kind::review, u"Review"_s, u"Needs review"_s, u"exclamationmark.triangle.fill"_s, Ink::orange, 0});
        row("searching", TrackState::working(Phase::searching),
            {Kind::working, u"Searching"_s, u"Searching"_s, u"magnifyingglass"_s, Ink::secondary, 0});
        row("detail takes the name's place but in speech", TrackState::working(Phase::converting, u"to AIFF"_s),
            {Kind::working, u"to AIFF"_s, u"Converting"_s, u"waveform"_s, Ink::secondary, 0});
        row("tagging", TrackState::working(Phase::tagging),
            {Kind::working, u"Tagging"_s, u"Tagging"_s, u"tag"_s, Ink::secondary, 0});
        row("verifying", TrackState::working(Phase::verifying),
            {Kind::working, u"Verifying"_s, u"Verifying"_s, u"checkmark.shield"_s, Ink::secondary, 0});
        row("downloading without a detail", TrackState::working(Phase::downloading),
            {Kind::downloading, u"43%"_s, u"Downloading"_s, {}, Ink::secondary, 0.425});
    }
    void statusFaces() {
        QFETCH(TrackState, state);
        TrackModel track(u"t"_s, u"Title"_s, u"Artist"_s, 200);
        track.setDownloadFraction(0.425);
        track.setState(state);
        QTEST(trackStatusFace(track), "face");
    }

    void aDownloadShowsItsOwnDetailFirst() {
        TrackModel track(u"t"_s, u"Title"_s, u"Artist"_s, 200);
        track.setState(TrackState::working(Phase::downloading, u"ignored"_s));
        track.setDownloadFraction(0.5);
        track.setProgressDetail(u"50% · 6 MB"_s);
        QCOMPARE(trackStatusFace(track).text, u"50% · 6 MB"_s);
    }

    void aDetailThatDoesNotFitLosesWholeParts() {
        const QFont font = TypeScale().caption;
        const QFontMetricsF metrics(font);
        const QString all = u"11% · 1 MB · 1.1 MB/s"_s;
        QCOMPARE(fittingDetail(all, 1000, font), all);
        QCOMPARE(fittingDetail(all, metrics.horizontalAdvance(u"44% · 4 MB"_s) + 1, font), u"11% · 1 MB"_s);
        QCOMPARE(fittingDetail(all, 1, font), u"11%"_s);
        // A narrow digit must not let a part in that a wide one would push out again.
        const double tight = metrics.horizontalAdvance(u"44% · 4 MB"_s) - 0.5;
        QCOMPARE(fittingDetail(u"11% · 1 MB"_s, tight, font), u"11%"_s);
    }

    void aReasonThatDoesNotFitIsNotCutAfterAStop() {
        const QFont font = TypeScale().caption;
        const QFontMetricsF metrics(font);
        const QString all = u"Not in your collection. Add it."_s;
        QCOMPARE(fittingReason(all, metrics.horizontalAdvance(all), font), all);
        QCOMPARE(fittingReason(all, metrics.horizontalAdvance(u"Not in your collection.…"_s) + 0.5, font),
                 u"Not in your collection…"_s);
        QCOMPARE(fittingReason(all, metrics.horizontalAdvance(u"Not in your collection. …"_s) + 0.5, font),
                 u"Not in your collection…"_s);
        QCOMPARE(fittingReason(all, metrics.horizontalAdvance(u"Not in your coll…"_s) + 0.5, font),
                 u"Not in your coll…"_s);
        QVERIFY(!fittingReason(u"No file."_s, metrics.horizontalAdvance(u"No file"_s), font).contains(u'.'));
        QCOMPARE(fittingReason(all, 1, font), u"…"_s);
        QCOMPARE(fittingReason({}, 1, font), QString());
    }

    void groupCounts() {
        QCOMPARE(groupCountsLine(17, 42, 2, 1), u"17 / 42 · 2 need review · 1 failed"_s);
        QCOMPARE(groupCountsLine(31, 64, 0, 0), u"31 / 64"_s);
        QCOMPARE(groupCountsLine(0, 0, 0, 3), u"0 / 0 · 3 failed"_s);
    }

    void groupBadges() {
        QCOMPARE(groupBadge({}), std::nullopt);
        QCOMPARE(groupBadge(Finish::ok), (StatusBadge{u"checkmark.circle.fill"_s, Ink::green, u"Done"_s}));
        QCOMPARE(groupBadge(Finish::lowConfidence),
                 (StatusBadge{u"exclamationmark.triangle.fill"_s, Ink::orange, u"Low confidence"_s}));
        QCOMPARE(groupBadge(Finish::failed), (StatusBadge{u"xmark.circle.fill"_s, Ink::red, u"Failed"_s}));
        QCOMPARE(groupBadge(Finish::skipped), (StatusBadge{u"minus.circle"_s, Ink::secondary, u"Skipped"_s}));
    }

    void percentIsSpokenRounded() {
        QCOMPARE(percentText(0.404), u"40 percent"_s);
        QCOMPARE(percentText(0.405), u"41 percent"_s);
    }

    void phaseTexts_data() {
        QTest::addColumn<SyncPhase>("phase");
        QTest::addColumn<QString>("text");
        QTest::newRow("idle") << SyncPhase::idle << u"Idle"_s;
        QTest::newRow("preparing") << SyncPhase::preparing << u"Preparing…"_s;
        QTest::newRow("running") << SyncPhase::running << u"Syncing"_s;
        QTest::newRow("finishing") << SyncPhase::finishing << u"Finishing…"_s;
        QTest::newRow("done") << SyncPhase::done << u"Complete"_s;
        QTest::newRow("cancelled") << SyncPhase::cancelled << u"Cancelled"_s;
        QTest::newRow("interrupted") << SyncPhase::interrupted << u"Interrupted"_s;
    }
    void phaseTexts() {
        QFETCH(SyncPhase, phase);
        QTEST(SummaryTexts::phaseText(phase), "text");
    }

    void runLines() {
        using SummaryTexts::runLine;
        QCOMPARE(runLine({}, {48, 106, 2, 1}), u"48 / 106 done · 2 need review · 1 failed"_s);
        QCOMPARE(runLine({}, {3, 9, 0, 0}), u"3 / 9 done"_s);
        QCOMPARE(runLine(SyncSummary{2, 3, 4, 5, 6, 7, 8}, {1, 1, 1, 1}),
                 u"3 done · 2 on disk · 4 flagged · 5 failed · 6 skipped"_s);
        QCOMPARE(runLine(SyncSummary{0, 0, 0, 0, 0, 7, 8}, {}), u"Up to date"_s);
        QCOMPARE(runLine(SyncSummary{0, 0, 0, 0, 1, 0, 0}, {}), u"1 skipped"_s);
    }

    void previewTexts() {
        using namespace SummaryTexts;
        QCOMPARE(previewCounts(1, 1), u"1 playlist · 1 track"_s);
        QCOMPARE(previewCounts(2, 12), u"2 playlists · 12 tracks"_s);
        QCOMPARE(previewCounts(0, 0), u"0 playlists · 0 tracks"_s);
        QCOMPARE(previewLine(12, 5), u"5 on disk · 7 not downloaded"_s);
        QCOMPARE(previewLine(5, 5), u"5 on disk"_s);
        QCOMPARE(previewLine(5, 0), u"5 not downloaded"_s);
        QCOMPARE(previewLine(0, 0), u"Empty"_s);
    }

    void columnsFillTheirRoomAndNeverOverlap_data() {
        QTest::addColumn<double>("detail");
        QTest::addColumn<bool>("roomy");
        for (const double detail : {300.0, 500.0, 592.0, 600.0, 639.0, 640.0, 760.0, 1000.0, 2400.0}) {
            QTest::addRow("%g", detail) << detail << false;
            QTest::addRow("%g roomy", detail) << detail << true;
        }
    }
    void columnsFillTheirRoomAndNeverOverlap() {
        QFETCH(double, detail);
        QFETCH(bool, roomy);
        const double content = detail - 48;
        const auto layout = TrackColumns::layout(content, detail, roomy);
        double end = 38;
        for (const auto *column : {&layout.title, &layout.artist, &layout.album, &layout.time, &layout.quality,
                                   &layout.source, &layout.status}) {
            QVERIFY(column->x >= end - 0.001);
            QVERIFY(column->width >= 0);
            end = column->width > 0 ? column->x + column->width : end;
        }
        if (detail >= 500)
            QCOMPARE(end, content);
    }

    void aWideTableHasItsIdealColumns() {
        const auto layout = TrackColumns::layout(952, 1000, false);
        QCOMPARE(layout.time.width, 40.0);
        QCOMPARE(layout.quality.width, 102.0);
        QCOMPARE(layout.source.width, 102.0);
        QCOMPARE(layout.status.width, 160.0);
        QCOMPARE(TrackColumns::layout(952, 1000, true).status.width, 192.0);
        const double names = 952 - 38 - 48 - 110 - 110 - 160;
        QCOMPARE(layout.title.width + 8, std::floor(names * 0.46));
        QCOMPARE(layout.album.width + 8, std::floor(names * 0.24));
    }

    void aNarrowPaneDropsAlbumThenQualityThenSource() {
        const auto wide = TrackColumns::layout(640 - 48, 640, false);
        QVERIFY(wide.album.width > 0 && wide.quality.width > 0 && wide.source.width > 0);
        QVERIFY(wide.quality.width + 8 >= 84 && wide.source.width + 8 >= 80);
        const auto noAlbum = TrackColumns::layout(639 - 48, 639, false);
        QCOMPARE(noAlbum.album.width, 0.0);
        QCOMPARE(noAlbum.status.width, 156.0);
        const auto noQuality = TrackColumns::layout(600 - 48, 600, false);
        QCOMPARE(noQuality.quality.width, 0.0);
        QVERIFY(noQuality.source.width > 0);
        const auto noSource = TrackColumns::layout(500 - 48, 500, true);
        QCOMPARE(noSource.quality.width, 0.0);
        QCOMPARE(noSource.source.width, 0.0);
        const double names = 452 - 38 - 48 - 156;
        QCOMPARE(noSource.title.width + 8, std::floor(names * 0.58));
    }

    void aVeryNarrowPaneKeepsTheTitleAndTheStatus() {
        const auto noTime = TrackColumns::layout(390 - 48, 390, false);
        QCOMPARE(noTime.time.width, 0.0);
        QVERIFY(noTime.artist.width > 0);
        QCOMPARE(noTime.status.width, 156.0);
        const auto alone = TrackColumns::layout(340 - 48, 340, false);
        QCOMPARE(alone.artist.width, 0.0);
        QCOMPARE(alone.title.width + 8, 292.0 - 38 - 120);
        QCOMPARE(alone.status.width, 120.0); // the least that it may have
        const auto large = TrackColumns::layout(340 - 48, 340, false, 1.5);
        QCOMPARE(large.status.width, 180.0);
        QCOMPARE(large.title.width + 8, 292.0 - 38 - 180);
    }

    void theColumnsGrowWithTheirText() {
        const auto layout = TrackColumns::layout(1600 - 48, 1600, false, 1.5);
        QCOMPARE(layout.time.width, 64.0);
        QCOMPARE(layout.quality.width, 157.0);
        QCOMPARE(layout.status.width, 240.0);
        QCOMPARE(layout.status.x + layout.status.width, 1552.0);
        QVERIFY(TrackColumns::layout(960 - 48, 960, false, 1.5).album.width > 0);
        QCOMPARE(TrackColumns::layout(959 - 48, 959, false, 1.5).album.width, 0.0); // 640 times 1.5
        const auto small = TrackColumns::layout(640 - 48, 640, false, 1.5);
        QCOMPARE(small.quality.width + small.source.width, 0.0);
        QCOMPARE(small.status.x + small.status.width, 592.0);
    }

private:
    QTranslator m_english;
};

QTEST_MAIN(ViewTextsTest)
#include "tst_viewtexts.moc"

#include "Support/SampleData.h"

#include "Transport/JSONReader.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Event = ServerEvent;

class TestSampleData : public QObject {
    Q_OBJECT

    template<class Case>
    static const Case &eventAt(std::size_t number) {
        const auto *const server = caseOf<HelperEvent::Server>(SampleData::syncScript().at(number - 1));
        const Case *const event = server ? caseOf<Case>(server->event) : nullptr;
        static const Case none{};
        if (!event)
            QTest::qFail(qPrintable(u"no such event at %1"_s.arg(number)), __FILE__, __LINE__);
        return event ? *event : none;
    }

private Q_SLOTS:
    void thePlaylistsAreTheTwo() {
        QCOMPARE(SampleData::playlistId(), u"spotify:demo"_s);
        QCOMPARE(SampleData::trackId(2), u"spotify:demo#2"_s);
        const std::vector<PlaylistDTO> expected{
            {u"spotify:demo"_s, PlaylistSourceId::spotify, u"Late Night Drive"_s, false, {}, 3, {}},
            {u"apple:focus"_s, PlaylistSourceId::apple, u"Focus Mix"_s, false, {}, 12, {}}};
        QCOMPARE(SampleData::playlists(), expected);
    }

    void theTracksAreTheThreeRows() {
        const auto &tracks = SampleData::tracks();
        QCOMPARE(tracks.size(), std::size_t(3));
        const double durations[] = {634, 540, 575};
        for (std::size_t row = 0; row < 3; ++row) {
            QCOMPARE(tracks[row].id, u"spotify:demo#%1"_s.arg(row));
            QCOMPARE(tracks[row].durationSec, durations[row]);
            QCOMPARE(tracks[row].artwork, ArtworkRef::none());
            QVERIFY(!tracks[row].title.isEmpty() && !tracks[row].artist.isEmpty() && !tracks[row].album->isEmpty());
        }
    }

    void thePreviewShowsTheSameRows() {
        const auto &preview = SampleData::previewTracks();
        QCOMPARE(preview.size(), std::size_t(3));
        for (std::size_t row = 0; row < 3; ++row)
            QCOMPARE(preview[row].track(), SampleData::tracks()[row]);
        QCOMPARE(preview[0].onDisk, PreviewTrackDTO::OnDisk::present);
        QCOMPARE(preview[0].meta, std::optional(TrackMeta{u"FLAC"_s, {}, {}}));
        QCOMPARE(preview[1].onDisk, PreviewTrackDTO::OnDisk::missing);
        QCOMPARE(preview[1].meta, std::nullopt);
        QCOMPARE(preview[2].onDisk, PreviewTrackDTO::OnDisk::present);
        QCOMPARE(preview[2].meta, std::optional(TrackMeta{u"MP3"_s, u"320"_s, {}}));
    }

    void theResultHoldsThePreview() {
        QCOMPARE(readJSON<PreviewTracksResult>(SampleData::previewTracksResult()).tracks, SampleData::previewTracks());
    }

    void theConfigurationIsTheSample() {
        SafeConfig expected;
        expected.sources = {SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube};
        expected.quality = {QualityFloor::mp3_320, false, true, true};
        expected.run = {5, 4, 5, 30, 24};
        expected.ui.theme = SafeConfig::Theme::dark;
        expected.outputDir = u"~/Music/zelk"_s;
        expected.identity = {true, false};
        expected.proxy = {false, false};
        expected.spotifyConnected = true;
        expected.appleMusicConnected = true;
        expected.effectiveSpotifyClientId = u"demo-client-id"_s;
        QCOMPARE(SampleData::sampleConfig(), expected);
        QVERIFY(!SampleData::sampleConfig().soundcloudConnected);
        QVERIFY(!SampleData::sampleConfig().acoustidConfigured);
    }

    void theScriptPlaysOneRun() {
        QCOMPARE(SampleData::syncScript().size(), std::size_t(15));
        const QString run = u"run-1"_s;
        const QString rows[] = {u"spotify:demo#0"_s, u"spotify:demo#1"_s, u"spotify:demo#2"_s};
        QCOMPARE(eventAt<Event::SyncStarted>(1), (Event::SyncStarted{run, run, 1}));
        QCOMPARE(eventAt<Event::PlaylistStarted>(2),
                 (Event::PlaylistStarted{run, u"spotify:demo"_s, 0, u"Late Night Drive"_s, SampleData::tracks()}));
        const std::size_t starts[] = {3, 9, 12};
        for (int row = 0; row < 3; ++row) {
            const auto &started = eventAt<Event::TrackStarted>(starts[row]);
            QCOMPARE(started.correlationId, run);
            QCOMPARE(started.trackId, rows[row]);
            QCOMPARE(started.index, row);
            QVERIFY(!started.label.isEmpty());
        }
        QCOMPARE(eventAt<Event::DiskCheck>(4), (Event::DiskCheck{run, rows[0], DiskCheckResult::missing, {}}));
        QCOMPARE(eventAt<Event::Step>(5), (Event::Step{run, rows[0], Phase::searching, {}}));
        QCOMPARE(eventAt<Event::DownloadProgress>(6),
                 (Event::DownloadProgress{run, rows[0], 50, u"6 MB"_s, u"1.2 MB/s"_s}));
        QCOMPARE(eventAt<Event::Step>(7), (Event::Step{run, rows[0], Phase::tagging, {}}));
        QCOMPARE(eventAt<Event::TrackFinished>(8), (Event::TrackFinished{run,
                                                                         rows[0],
                                                                         Finish::ok,
                                                                         {},
                                                                         Event::TrackFinishKind::downloaded,
                                                                         TrackMeta{u"FLAC"_s, u"1024"_s, {}}}));
        QCOMPARE(eventAt<Event::DiskCheck>(10), (Event::DiskCheck{run, rows[1], DiskCheckResult::missing, {}}));
        QCOMPARE(eventAt<Event::DiskCheck>(13),
                 (Event::DiskCheck{run, rows[2], DiskCheckResult::present, TrackMeta{u"ALAC"_s, {}, {}}}));
        QCOMPARE(eventAt<Event::PlaylistFinished>(14),
                 (Event::PlaylistFinished{run, u"spotify:demo"_s, Finish::lowConfidence}));
        QCOMPARE(eventAt<Event::SyncDone>(15), (Event::SyncDone{run, run, SyncSummary{1, 1, 1, 0, 0, 0, 0}}));
    }

    void theScriptsReviewOffersOneCandidate() {
        const auto &review = eventAt<Event::NeedsReview>(11);
        QCOMPARE(review.correlationId, u"run-1"_s);
        QCOMPARE(review.trackId, u"spotify:demo#1"_s);
        QVERIFY(review.best);
        QCOMPARE(review.best->confidence, 0.42);
        QCOMPARE(review.best->url, u"https://x/1"_s);
        QVERIFY(review.best->title.contains(u'(') && review.best->title.endsWith(u')'));
        QCOMPARE(review.candidates.size(), std::size_t(1));
        const CandidateDTO &candidate = review.candidates.front();
        QCOMPARE(candidate.id, u"c1"_s);
        QCOMPARE(candidate.channel, u"slsk"_s);
        QCOMPARE(candidate.durationSec, 540.0);
        QCOMPARE(candidate.source, std::optional(u"soulseek"_s));
        QCOMPARE(candidate.format, std::optional(u"FLAC"_s));
        QCOMPARE(candidate.bitrateKbps, std::optional<qint64>(1024));
        QCOMPARE(candidate.confidence, std::optional(0.42));
    }
};

QTEST_APPLESS_MAIN(TestSampleData)
#include "tst_sampledata.moc"

#include "Support/SampleData.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QString runId = u"run-1"_s;

std::vector<TrackDTO> makeTracks() {
    const auto track = [](qint64 row, QString title, QString artist, QString album, double durationSec) {
        return TrackDTO{SampleData::trackId(row), std::move(title), std::move(artist),
                        std::move(album),         durationSec,      {}};
    };
    return {
        track(0, u"Sodium Lamps"_s, u"Avenue North"_s, u"Kilometre Zero"_s, 634),
        track(1, u"Glass Overpass"_s, u"Mira Lund"_s, u"Slow Lanes"_s, 540),
        track(2, u"Last Exit Before Dawn"_s, u"The Toll Booths"_s, u"Radio Distance"_s, 575),
    };
}

std::vector<PreviewTrackDTO> makePreviewTracks() {
    const auto preview = [](qint64 row, PreviewTrackDTO::OnDisk onDisk, std::optional<TrackMeta> meta) {
        const TrackDTO &track = SampleData::tracks().at(static_cast<std::size_t>(row));
        return PreviewTrackDTO{track.id,          track.title,   track.artist, track.album,
                               track.durationSec, track.artwork, onDisk,       std::move(meta)};
    };
    using OnDisk = PreviewTrackDTO::OnDisk;
    return {
        preview(0, OnDisk::present, TrackMeta{u"FLAC"_s, {}, {}}),
        preview(1, OnDisk::missing, {}),
        preview(2, OnDisk::present, TrackMeta{u"MP3"_s, u"320"_s, {}}),
    };
}

SafeConfig makeConfig() {
    SafeConfig config;
    config.sources = allCases<SourceId>();
    config.quality = {QualityFloor::mp3_320, false, true, true};
    config.run = {5, 4, 5, 30, 24};
    config.ui = {SafeConfig::Theme::dark};
    config.outputDir = u"~/Music/zelk"_s;
    config.identity = {true, false};
    config.proxy = {false, false};
    config.spotifyConnected = true;
    config.soundcloudConnected = false;
    config.acoustidConfigured = false;
    config.appleMusicConnected = true;
    config.effectiveSpotifyClientId = u"demo-client-id"_s;
    return config;
}

ServerEvent::NeedsReview makeReview() {
    ServerEvent::ReviewBest best{0.42, u"Glass Overpass (Nightbus Mix)"_s, u"https://x/1"_s};
    CandidateDTO candidate;
    candidate.id = u"c1"_s;
    candidate.title = best.title;
    candidate.channel = u"slsk"_s;
    candidate.durationSec = 540;
    candidate.source = u"soulseek"_s;
    candidate.format = u"FLAC"_s;
    candidate.bitrateKbps = 1024;
    candidate.confidence = 0.42;
    return {runId, SampleData::trackId(1), u"Mira Lund - Glass Overpass"_s, std::move(best), {std::move(candidate)}};
}

std::vector<HelperEvent> makeScript() {
    using Event = ServerEvent;
    const QString row0 = SampleData::trackId(0);
    const QString row1 = SampleData::trackId(1);
    const QString row2 = SampleData::trackId(2);
    const std::vector<ServerEvent> events{
        Event::SyncStarted{runId, runId, 1},
        Event::PlaylistStarted{runId, SampleData::playlistId(), 0, u"Late Night Drive"_s, SampleData::tracks()},
        Event::TrackStarted{runId, row0, 0, u"Avenue North - Sodium Lamps"_s},
        Event::DiskCheck{runId, row0, DiskCheckResult::missing, {}},
        Event::Step{runId, row0, Phase::searching, {}},
        Event::DownloadProgress{runId, row0, 50, u"6 MB"_s, u"1.2 MB/s"_s},
        Event::Step{runId, row0, Phase::tagging, {}},
        Event::TrackFinished{
            runId, row0, Finish::ok, {}, Event::TrackFinishKind::downloaded, TrackMeta{u"FLAC"_s, u"1024"_s, {}}},
        Event::TrackStarted{runId, row1, 1, u"Mira Lund - Glass Overpass"_s},
        Event::DiskCheck{runId, row1, DiskCheckResult::missing, {}},
        makeReview(),
        Event::TrackStarted{runId, row2, 2, u"The Toll Booths - Last Exit Before Dawn"_s},
        Event::DiskCheck{runId, row2, DiskCheckResult::present, TrackMeta{u"ALAC"_s, {}, {}}},
        Event::PlaylistFinished{runId, SampleData::playlistId(), Finish::lowConfidence},
        Event::SyncDone{runId, runId, SyncSummary{1, 1, 1, 0, 0, 0, 0}},
    };
    std::vector<HelperEvent> script;
    for (const ServerEvent &event : events)
        script.push_back(HelperEvent::server(event));
    return script;
}

} // namespace

QString SampleData::playlistId() {
    return u"spotify:demo"_s;
}

QString SampleData::trackId(qint64 row) {
    return WireProtocol::trackId(playlistId(), row);
}

const std::vector<PlaylistDTO> &SampleData::playlists() {
    static const std::vector<PlaylistDTO> playlists{
        {playlistId(), PlaylistSourceId::spotify, u"Late Night Drive"_s, false, {}, 3, {}},
        {u"apple:focus"_s, PlaylistSourceId::apple, u"Focus Mix"_s, false, {}, 12, {}},
    };
    return playlists;
}

const std::vector<TrackDTO> &SampleData::tracks() {
    static const std::vector<TrackDTO> tracks = makeTracks();
    return tracks;
}

const std::vector<PreviewTrackDTO> &SampleData::previewTracks() {
    static const std::vector<PreviewTrackDTO> tracks = makePreviewTracks();
    return tracks;
}

const JSONValue &SampleData::previewTracksResult() {
    // A record of our own that can't be written and read back is a mistake in the program.
    static const JSONValue result = []() noexcept { return toJSONValue(PreviewTracksResult{previewTracks()}); }();
    return result;
}

const SafeConfig &SampleData::sampleConfig() {
    static const SafeConfig config = makeConfig();
    return config;
}

const std::vector<HelperEvent> &SampleData::syncScript() {
    static const std::vector<HelperEvent> script = makeScript();
    return script;
}

} // namespace zelk

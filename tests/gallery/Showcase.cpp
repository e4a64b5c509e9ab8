#include "Showcase.h"

#include "Support/SampleData.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelk::Showcase {

namespace {

using Event = ServerEvent;
constexpr auto apple = PlaylistSourceId::apple;
constexpr auto spotify = PlaylistSourceId::spotify;

const QString runId = u"run-1"_s;
const QString sunset = u"terrace-sunset"_s;
const QString peak = u"peak-time"_s;
constexpr int sunsetCount = 42;
constexpr int peakCount = 64;

ArtworkRef cover(int number) {
    return ArtworkRef::appleMusic(QString::number(number % covers, 16));
}

ArtworkRef mosaicFrom(int number) {
    QStringList ids;
    for (int i = 0; i < 4; ++i)
        ids += QString::number((number + i * 3) % covers, 16);
    return ArtworkRef::mosaic(ids);
}

PlaylistDTO playlist(PlaylistSourceId source, const QString &id, const QString &name, qint64 count, ArtworkRef artwork,
                     std::optional<QString> parentId = {}) {
    return {id, source, name, false, std::move(parentId), count, std::move(artwork)};
}

PlaylistDTO folder(const QString &id, const QString &name) {
    return {id, apple, name, true, {}, {}, {}};
}

struct Song {
    QStringView title, artist, album;
    double durationSec;
};

constexpr std::array songs{
    Song{u"Night Ferry", u"Ada Moreau", u"Harbour Lines", 372},
    Song{u"Salt Flats (Extended)", u"Kolibri", u"Salt Flats", 424},
    Song{u"Paper Lanterns", u"Juno Halden", u"Slow Bloom", 338},
    Song{u"Copper Sky", u"Mira & The Tide", u"Copper Sky", 291},
    Song{u"Undertow", u"Felix Amaro", u"", 500},
    Song{u"Low Sun", u"Ostrava", u"Coastline", 405},
    Song{u"Marble Floor", u"Nine Rivers", u"Marble", 359},
    Song{u"Afterglow", u"Sena Okoro", u"Warm Static", 393},
    Song{u"Ironworks", u"Lund & Vey", u"Foundry", 408},
    Song{u"Strobe Garden", u"Hexa", u"Night Index", 362},
    Song{u"Glass Tram", u"Oto Lind", u"Depot", 377},
    Song{u"Velvet Static", u"Marrow", u"Marrow", 415},
};

QString trackId(const QString &playlistId, int row) {
    return u"%1#%2"_s.arg(playlistId).arg(row);
}

// The songs from `first` on, over and over with another part's number.
std::vector<TrackDTO> tracks(const QString &playlistId, int first, int count) {
    std::vector<TrackDTO> made;
    for (int row = 0; row < count; ++row) {
        const auto place = static_cast<std::size_t>(first + row);
        const Song &song = songs.at(place % songs.size());
        const auto round = place / songs.size();
        TrackDTO track;
        track.id = trackId(playlistId, row);
        track.title = song.title.toString();
        if (round > 0)
            track.title += u", Part %1"_s.arg(round + 1);
        track.artist = song.artist.toString();
        if (!song.album.isEmpty())
            track.album = song.album.toString();
        track.durationSec = song.durationSec;
        if (place != 9)
            track.artwork = cover(static_cast<int>(place));
        made.push_back(std::move(track));
    }
    return made;
}

TrackMeta meta(QStringView format, QStringView bitrate, QStringView source) {
    TrackMeta made;
    made.format = format.toString();
    if (!bitrate.isEmpty())
        made.bitrate = bitrate.toString();
    made.source = source.toString();
    return made;
}

Event finished(const QString &id, Finish status, std::optional<TrackMeta> meta = {},
               std::optional<QString> detail = {}) {
    Event::TrackFinished event;
    event.correlationId = runId;
    event.trackId = id;
    event.status = status;
    event.detail = std::move(detail);
    event.meta = std::move(meta);
    return event;
}

CandidateDTO candidate(const QString &id, const QString &title, double durationSec, const QString &source,
                       const QString &format, std::optional<qint64> bitrate, double confidence) {
    CandidateDTO made;
    made.id = id;
    made.title = title;
    made.channel = source;
    made.durationSec = durationSec;
    made.source = source;
    made.format = format;
    made.bitrateKbps = bitrate;
    made.confidence = confidence;
    return made;
}

} // namespace

std::vector<PlaylistDTO> library() {
    return {
        folder(u"gigs"_s, u"Gigs 2025"_s),
        playlist(apple, sunset, u"Terrace Sunset"_s, sunsetCount, mosaicFrom(0), u"gigs"_s),
        playlist(apple, u"warehouse"_s, u"Warehouse Opening"_s, 36, mosaicFrom(3), u"gigs"_s),
        playlist(apple, u"last-hour"_s, u"Last Hour"_s, 18, mosaicFrom(6), u"gigs"_s),
        folder(u"crates"_s, u"Crates"_s),
        playlist(apple, u"garage"_s, u"Garage, Sorted"_s, 73, mosaicFrom(2), u"crates"_s),
        playlist(apple, u"broken"_s, u"Broken Beat Sketches"_s, 27, cover(2)),
        playlist(apple, u"new"_s, u"New Playlist"_s, 0, ArtworkRef::none()),
        playlist(spotify, peak, u"Peak Time 132"_s, peakCount, mosaicFrom(1)),
        playlist(spotify, u"wedding"_s, u"Wedding — Late Set"_s, 51, mosaicFrom(4)),
        playlist(spotify, u"dub"_s, u"Dub Techno Long Blends"_s, 112, cover(5)),
        playlist(spotify, u"edits"_s, u"Edits & Bootlegs"_s, 33, mosaicFrom(8)),
        playlist(spotify, u"requests"_s, u"Requests"_s, 1, cover(4)),
    };
}

QSet<QString> selection() {
    return {sunset, peak};
}

SafeConfig config() {
    SafeConfig made = SampleData::sampleConfig();
    made.proxy = {true, true};
    return made;
}

std::vector<PreviewTrackDTO> preview() {
    std::vector<PreviewTrackDTO> made;
    for (TrackDTO &track : tracks(sunset, 0, sunsetCount)) {
        const bool isPresent = made.size() % 3 == 0;
        made.push_back({std::move(track.id), std::move(track.title), std::move(track.artist), std::move(track.album),
                        track.durationSec, std::move(track.artwork),
                        isPresent ? PreviewTrackDTO::OnDisk::present : PreviewTrackDTO::OnDisk::missing,
                        isPresent ? std::optional(meta(u"FLAC", {}, u"soulseek")) : std::nullopt});
    }
    return made;
}

std::vector<ServerEvent> run() {
    const auto in = [](int row) { return trackId(sunset, row); };
    std::vector<Event> events{
        Event::SyncStarted{runId, runId, 2},
        Event::PlaylistStarted{runId, sunset, 0, u"Terrace Sunset"_s, tracks(sunset, 0, sunsetCount)},
        Event::PlaylistStarted{runId, peak, 1, u"Peak Time 132"_s, tracks(peak, 7, peakCount)},
        finished(in(0), Finish::ok, meta(u"FLAC", {}, u"soulseek")),
        Event::DiskCheck{runId, in(1), DiskCheckResult::present, meta(u"FLAC", {}, u"bandcamp")},
        Event::DownloadProgress{runId, in(2), 42, u"6 MB"_s, u"1.2 MB/s"_s},
        Event::Step{runId, in(3), Phase::searching, {}},
        Event::NeedsReview{
            runId,
            in(4),
            u"Felix Amaro - Undertow"_s,
            {},
            {candidate(u"c1"_s, u"Undertow (Original Mix)"_s, 503, u"Soulseek"_s, u"FLAC"_s, {}, 0.68),
             candidate(u"c2"_s, u"Felix Amaro – Undertow"_s, 498, u"SoundCloud"_s, u"AAC"_s, 256, 0.54),
             candidate(u"c3"_s, u"Undertow (Radio Edit) [HQ]"_s, 248, u"YouTube"_s, u"OPUS"_s, 160, 0.31)}},
        finished(in(5), Finish::lowConfidence, meta(u"MP3", u"320", u"soundcloud")),
        finished(in(6), Finish::failed, {}, u"No match found"_s),
        Event::NeedsReview{runId, in(7), u"Sena Okoro - Afterglow"_s, {}, {}},
    };
    for (int row = 8; row < 22; ++row)
        events.push_back(finished(in(row), Finish::ok, meta(u"AAC", u"256", u"youtube")));
    events.push_back(Event::TrackStarted{runId, trackId(peak, 0), 0, u"Sena Okoro - Afterglow"_s});
    events.push_back(finished(trackId(peak, 2), Finish::skipped));
    for (int row = 3; row < 33; ++row)
        events.push_back(finished(trackId(peak, row), Finish::ok, meta(u"FLAC", {}, u"soulseek")));
    return events;
}

ServerEvent runEnd() {
    SyncSummary summary;
    summary.ok = 81;
    summary.present = 19;
    summary.flagged = 3;
    summary.failed = 2;
    summary.skipped = 1;
    return Event::SyncDone{runId, runId, summary};
}

ServerEvent leftovers() {
    return Event::OrphansFound{runId,
                               sunset,
                               {u"/music/Kolibri - Tidal Room.flac"_s, u"/music/Hexa - Long Corridor.mp3"_s,
                                u"/music/Ostrava - Sleeper Car.flac"_s, u"/music/Marrow - Blue Hour.m4a"_s,
                                u"/music/Oto Lind - Turntable Rain.flac"_s}};
}

ServerEvent tunnelStatus() {
    return Event::ProxyStatus{ProxyStatusValue::connected, u"3 nodes"_s};
}

} // namespace zelk::Showcase

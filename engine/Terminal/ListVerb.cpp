#include "Terminal/Choice.h"
#include "Terminal/Verbs.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

struct Row {
    QString onDisk;
    QString tracks;
    QString source;
    QString name;
    QString id; // where the name alone doesn't do
};

/// Nothing if the playlist has gone since it was listed.
std::optional<qint64> countOnDisk(Engine &engine, const PlaylistDTO &playlist) {
    try {
        const auto tracks = engine.playlistTracks(playlist.source, playlist.id);
        return std::count_if(tracks.begin(), tracks.end(), [](const PreviewTrackDTO &track) {
            return track.onDisk == PreviewTrackDTO::OnDisk::present;
        });
    } catch (const MethodError &) {
        return std::nullopt;
    }
}

int widest(const std::vector<Row> &rows, QString Row::*column) {
    int columns = 0;
    for (const Row &row : rows) {
        columns = std::max(columns, columnsOf(row.*column));
    }
    return columns;
}

} // namespace

int listPlaylists(Session &session) {
    std::vector<Row> rows{{u"ON DISK"_s, u"TRACKS"_s, u"SOURCE"_s, u"NAME"_s, {}}};
    for (const NamedPlaylist &named : namePlaylists(session.engine.listPlaylists(std::nullopt))) {
        if (named.playlist.isFolder) {
            continue;
        }
        const auto onDisk = countOnDisk(session.engine, named.playlist);
        rows.push_back({onDisk ? QString::number(*onDisk) : u"-"_s,
                        QString::number(named.playlist.trackCount.value_or(0)), sourceName(named.playlist.source),
                        named.path, named.isAmbiguous ? named.playlist.id : QString()});
    }
    passOn(session);
    if (rows.size() == 1) {
        session.console.complain(
            u"zelk: there are no playlists. Put your exported playlists (CSV, M3U, XSPF) into %1."_s.arg(
                session.engine.config().playlistDirs.join(u", "_s)));
        return allDone;
    }
    const int onDisk = widest(rows, &Row::onDisk);
    const int tracks = widest(rows, &Row::tracks);
    const int source = widest(rows, &Row::source);
    for (const Row &row : rows) {
        const QString numbers = paddedLeft(row.onDisk, onDisk) + u"  "_s + paddedLeft(row.tracks, tracks) + u"  "_s +
                                padded(row.source, source) + u"  "_s;
        session.console.line(
            {{numbers}, {row.name}, {row.id.isEmpty() ? QString() : u"  ["_s + row.id + u']', Span::Tone::Faint}});
    }
    return allDone;
}

} // namespace zelk::engine

#include "PlaylistChecks.h"

#include "Playlists/RowIdentity.h"
#include "Playlists/SnapshotBuilder.h"

#include <QDir>
#include <QSet>

#include <cmath>
#include <cstring>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;

namespace zelk::fuzz {

qint64 ShortReads::readData(char *data, qint64 most) {
    const qint64 count = std::min({most, _most, _bytes.size() - pos()});
    if (count <= 0)
        return -1;
    std::memcpy(data, _bytes.data() + pos(), static_cast<std::size_t>(count));
    return count;
}

qint64 rowsIn(const ReadFile &file) {
    qint64 rows = 0;
    for (const ReadList &list : file.lists)
        rows += static_cast<qint64>(list.tracks.size());
    return rows;
}

namespace {

/// So few that most inputs meet them.
constexpr ReadLimits tight{3, 200, 4, 2};

void checkTrack(const ListedTrack &track) {
    holds(!track.title.isEmpty(), "a track has a title");
    holds(track.title == track.title.simplified(), "a title is one line");
    holds(std::isfinite(track.durationSec) && track.durationSec >= 0 && track.durationSec <= longestTrack,
          "a length is a length");
    holds(track.location.isEmpty() || (track.location.startsWith(u'/') && !track.location.contains(QChar(0)) &&
                                       QDir::cleanPath(track.location) == track.location),
          "a location is an absolute path");
    const QString key = rowKeyOf(track, probeOf(track));
    holds(!keyWithoutLength(key).isEmpty() && mayBeOneRecording(key, key), "a row is the same recording as itself");
    holds(track.rowKey.isEmpty() || track.rowKey == key, "a row's key is the one that it has");
}

void checkLimits(const ReadFile &file, const ReadLimits &limits) {
    QSet<QString> tracks;
    ReadLimits left = limits;
    for (const ReadList &list : file.lists) {
        for (const ListedTrack &track : list.tracks) {
            // Lists may share a track, which then counts once.
            const QString all = spellingOf(track) + track.album + u'\n' + track.isrc + u'\n' + track.artworkUrl +
                                u'\n' + track.persistentId + u'\n' + track.location;
            if (!tracks.contains(all))
                holds(left.take(track), "there are no more tracks, and no more text, than the limit");
            tracks.insert(all);
        }
    }
    holds(rowsIn(file) <= std::max(limits.rows, limits.tracks), "there are no more rows than the limit");
}

void checkWarnings(const ReadFile &file, qsizetype bytes) {
    holds(file.whole || !file.warnings.empty(), "what isn't whole has a reason");
    for (const ListWarning &warning : file.warnings) {
        holds(!warning.message.isEmpty(), "a warning says something");
        holds(warning.line >= 0 && warning.line <= bytes + 1, "a warning is about a line of the file");
    }
    holds(file.warnings.size() <= 21, "warnings are few");
    if (!file.whole) {
        const QString &reason = file.warnings.back().message;
        holds(reason.startsWith("holds more than"_L1) || reason.startsWith("the list breaks off"_L1) ||
                  reason.startsWith("the library can't be read on"_L1) || file.warnings.size() == 1,
              "the last warning is why it isn't whole");
    }
}

/// The playlists that the application is told of.
void checkSnapshot(const ReadFile &file) {
    PlaylistSnapshot snapshot;
    const auto content = std::make_shared<const ReadFile>(file);
    SnapshotBuilder builder(snapshot);
    for (int times = 0; times < 2; ++times) // two of the folders may hold it
        builder.enter(PlaylistSourceId::apple, u"/music"_s, u"/music/lists/a.list"_s, content);
    putInOrder(snapshot);
    holds(snapshot.byId.size() == static_cast<qsizetype>(snapshot.playlists.size()), "ids are unique");
    holds(snapshot.playlists.size() == file.lists.size() + (file.lists.empty() ? 0 : 1), "no list is lost");
    QSet<QString> seen;
    for (const Playlist &playlist : snapshot.playlists) {
        holds(snapshot.find(playlist.id) == &playlist, "a playlist is found by its id");
        holds(playlist.parentId.isEmpty() || seen.contains(playlist.parentId), "a folder comes before what is in it");
        holds(playlist.isFolder == !playlist.tracks, "a folder has no tracks, and all else has");
        seen.insert(playlist.id);
    }
}

/// Whether the XML reader broke off. It decodes a stretch at once, so it meets bytes that are no text sooner where
/// stretches are longer.
bool brokeOff(const ReadFile &file) {
    return !file.whole && !file.warnings.back().message.startsWith("holds more than"_L1);
}

bool same(const ReadFile &a, const ReadFile &b) {
    if (!a.whole && !b.whole && (brokeOff(a) || brokeOff(b)))
        return true;
    return a.lists == b.lists && a.warnings == b.warnings && a.moreWarnings == b.moreWarnings && a.whole == b.whole;
}

void check(QByteArrayView input, const ReadPlaylist &read, const ReadLimits &limits) {
    // In one piece, and in a few: a reader looks at the first three bytes at once.
    ShortReads whole(input, input.size());
    const ReadFile file = read(whole, limits);
    ShortReads pieces(input, std::max(3 + input.size() % 61, input.size() / 16));
    checkWarnings(file, input.size());
    const ReadFile again = read(pieces, limits);
    checkWarnings(again, input.size());
    holds(same(again, file), "a file means the same however its bytes arrive");
    for (const ReadList &list : file.lists) {
        for (const ListedTrack &track : list.tracks)
            checkTrack(track);
    }
    checkLimits(file, limits);
    checkSnapshot(file);
}

} // namespace

void checkPlaylist(QByteArrayView input, const ReadPlaylist &read) {
    check(input, read, {});
    check(input, read, tight);
}

} // namespace zelk::fuzz

#include "Run/Orphans.h"

#include "Output/TrackWriter.h"
#include "Playlists/RowIdentity.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Whether a playlist's file is out of reach rather than gone: a folder that is missing or empty may be a disk that
/// isn't there just now, and a file that stands and wasn't read lies where this engine doesn't look.
bool outOfReach(const QString &origin, const PlaylistSnapshot &snapshot) {
    for (const QString &path : snapshot.unreadable) {
        if (origin == path || origin.startsWith(path + u'/')) {
            return true;
        }
    }
    if (QFileInfo(origin).isFile()) {
        return std::none_of(snapshot.playlists.begin(), snapshot.playlists.end(),
                            [&](const Playlist &playlist) { return playlist.origin == origin; });
    }
    const QDir folder = QFileInfo(origin).absoluteDir();
    return !folder.exists() || !folder.isReadable() || folder.isEmpty();
}

} // namespace

QStringList findOrphans(Database &database, const PlaylistSnapshot &snapshot, const QSet<QString> &playlists,
                        double toleranceSec) {
    if (!snapshot.isComplete) { // a playlist that isn't known yet may want any of them
        return {};
    }
    QMultiHash<QString, QString> liveRows; // keys, by what they have without the length
    for (const Playlist &playlist : snapshot.playlists) {
        for (std::size_t i = 0; playlist.tracks && i < playlist.tracks->size(); ++i) {
            const QString &key = (*playlist.tracks)[i].rowKey;
            liveRows.insert(keyWithoutLength(key), key);
        }
    }
    QSet<QString> kept;
    const QHash<QString, QString> origins = database.playlistOrigins();
    for (auto origin = origins.cbegin(); origin != origins.cend(); ++origin) {
        const bool known = snapshot.find(origin.key()) && !snapshot.unreadable.contains(origin.value());
        if (!known && outOfReach(origin.value(), snapshot)) {
            kept.insert(origin.key());
        }
    }
    const auto isLive = [&](const QString &rowKey) {
        const QString common = keyWithoutLength(rowKey);
        for (auto row = liveRows.constFind(common); row != liveRows.cend() && row.key() == common; ++row) {
            if (mayBeOneRecording(rowKey, *row)) {
                return true;
            }
        }
        return false;
    };
    QSet<qint64> wanted;
    QSet<qint64> concerned;
    for (const Want &want : database.wants()) {
        if (isLive(want.rowKey) || kept.contains(want.playlistId)) {
            wanted.insert(want.fileId);
        }
        if (playlists.isEmpty() || playlists.contains(want.playlistId)) {
            concerned.insert(want.fileId);
        }
    }
    QStringList orphans;
    for (const WrittenFile &file : database.writtenFiles()) {
        if (!concerned.contains(file.id) || wanted.contains(file.id)) {
            continue;
        }
        const Standing standing = standingOf(file, toleranceSec);
        if (standing != Standing::Gone && standing != Standing::Longer) {
            orphans += file.path;
        }
    }
    return orphans;
}

TrashResult moveToTrash(Database &database, const QStringList &paths) {
    TrashResult result;
    for (const QString &path : paths) {
        if (QFile file(path); !file.moveToTrash()) {
            result.failure = u"%1 couldn't be moved to the Trash: %2"_s.arg(path, file.errorString());
            break;
        }
        database.forgetFile(path);
        result.moved += path;
    }
    return result;
}

} // namespace zelk::engine

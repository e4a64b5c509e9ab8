#pragma once

#include "Playlists/Playlist.h"
#include "Store/Database.h"

#include <QSet>
#include <QStringList>

namespace zelk::engine {

/// The files that we wrote, that still stand, and that no row of any playlist wants now; none that by its length must
/// be the user's own by now. Those of a playlist whose file or folder can't be read just now are all wanted, and as
/// long as not all playlists are known, every file is. With `playlists`, only files that one of these once wanted.
QStringList findOrphans(Database &database, const PlaylistSnapshot &snapshot, const QSet<QString> &playlists,
                        double toleranceSec);

struct TrashResult {
    QStringList moved;
    QString failure; ///< Why the next one couldn't be moved, for the user; empty if all were.
};

/// Moves files to the Trash, one after the other until one can't be, and forgets those that were.
TrashResult moveToTrash(Database &database, const QStringList &paths);

} // namespace zelk::engine

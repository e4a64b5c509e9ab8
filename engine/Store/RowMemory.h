#pragma once

#include "Playlists/Playlist.h"
#include "Store/Database.h"

#include <QHash>

#include <memory>

namespace zelk::engine {

/// Keeps what is remembered of rows findable when the program reads their titles otherwise than it did, and their keys
/// have changed. Any one thread at a time.
class RowMemory {
public:
    explicit RowMemory(Database &database) : _database(database) {}

    /// Looks at the lists that weren't so when it last looked. Throws DatabaseError.
    void follow(const PlaylistSnapshot &snapshot);

    /// Follows the rows of these lists, and keeps the keys that they have.
    static void enter(Database &database, const std::vector<Playlist> &playlists);

private:
    using Tracks = std::shared_ptr<const std::vector<ListedTrack>>;

    Database &_database;
    QHash<QString, Tracks> _seen; // by playlist
};

} // namespace zelk::engine

#include "Store/RowMemory.h"

#include "Playlists/RowIdentity.h"

namespace zelk::engine {

namespace {

void addRows(const std::vector<ListedTrack> &tracks, QHash<QString, QString> &rowKeys) {
    for (const ListedTrack &track : tracks) {
        rowKeys.insert(spellingOf(track), track.rowKey);
    }
}

} // namespace

void RowMemory::follow(const PlaylistSnapshot &snapshot) {
    QHash<QString, Tracks> seen;
    QHash<QString, QString> rowKeys;
    for (const Playlist &playlist : snapshot.playlists) {
        if (playlist.tracks) {
            if (_seen.value(playlist.id) != playlist.tracks) {
                addRows(*playlist.tracks, rowKeys);
            }
            seen.insert(playlist.id, playlist.tracks);
        }
    }
    if (!rowKeys.isEmpty()) {
        _database.followRows(rowKeys, Database::Remember::WhatIsMet);
    }
    _seen = std::move(seen);
}

void RowMemory::enter(Database &database, const std::vector<Playlist> &playlists) {
    QHash<QString, QString> rowKeys;
    for (const Playlist &playlist : playlists) {
        addRows(*playlist.tracks, rowKeys);
    }
    database.followRows(rowKeys, Database::Remember::All);
}

} // namespace zelk::engine

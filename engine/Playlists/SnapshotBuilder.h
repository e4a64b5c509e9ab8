#pragma once

#include "Playlists/Playlist.h"

namespace zelk::engine {

/// Enters what the files hold into a snapshot, with the folders that they lie in.
class SnapshotBuilder {
public:
    explicit SnapshotBuilder(PlaylistSnapshot &snapshot) : _snapshot(snapshot) {}

    /// `root` is the folder that was looked through; those between it and the file become folders of playlists. A file
    /// that has been entered already is passed over.
    void enter(PlaylistSourceId source, const QString &root, const QString &path,
               const std::shared_ptr<const ReadFile> &content);

private:
    QString enterFolders(PlaylistSourceId source, const QString &root, const QString &folder);
    void add(Playlist playlist);
    /// The id of the list of that place, which nothing else has; empty if the list has been entered.
    QString freeId(PlaylistSourceId source, const QString &place);

    PlaylistSnapshot &_snapshot;
    QHash<QString, QString> _places; // as they are written, by the id of the list there
};

/// Puts the playlists in their order: a folder before what is in it, siblings by name.
void putInOrder(PlaylistSnapshot &snapshot);

} // namespace zelk::engine

#pragma once

#include "Playlists/ListedTrack.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QHash>
#include <QStringList>

#include <memory>

namespace zelk::engine {

/// A playlist, or a folder of playlists, under the id by which the application knows it.
struct Playlist {
    QString id;
    PlaylistSourceId source{};
    QString name;
    bool isFolder = false;
    QString parentId; ///< Empty at the top.
    ArtworkRef artwork;
    QString origin;                                         ///< The file that tells it; empty for a folder.
    std::shared_ptr<const std::vector<ListedTrack>> tracks; ///< Null for a folder.
};

/// All playlists at one moment. Never changed once made, so any thread may read it.
struct PlaylistSnapshot {
    std::vector<Playlist> playlists; ///< A folder before what is in it, siblings by name.
    QHash<QString, std::size_t> byId;
    /// Files and folders that couldn't be looked at: what they held before may still be wanted.
    QStringList unreadable;
    /// What is wrong with each of them that is there, for people to read: its path, and why.
    QStringList problems;
    /// False if the scan that made it hadn't ended: whatever isn't in it may be there all the same.
    bool isComplete = true;

    const Playlist *find(const QString &id) const {
        const auto found = byId.constFind(id);
        return found == byId.constEnd() ? nullptr : &playlists[*found];
    }
};

/// A stable id: the source, ":" and hexadecimal digits, so it is free of the signs that others join ids with.
QString playlistId(PlaylistSourceId source, const QString &folder, const QString &file, const QString &list);

} // namespace zelk::engine

#include "Views/SidebarTree.h"

#include "Support/Blanks.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::SidebarTree {

namespace {

// A library may list an id more than once, and an entry may so contain itself. Each walk therefore goes into a folder's
// id once: it ends, and in time.
using Walked = QSet<QString>;

bool isNew(Walked &walked, const QString &folderId) {
    const auto before = walked.size();
    walked.insert(folderId);
    return walked.size() > before;
}

bool contains(const QString &name, const QString &query) {
    const QLocale locale;
    return locale.toLower(name).contains(locale.toLower(query));
}

bool matchesAt(const LibraryStore &library, const PlaylistDTO &playlist, const QString &query, Walked &walked) {
    if (query.isEmpty() || contains(playlist.name, query))
        return true;
    if (!playlist.isFolder || !isNew(walked, playlist.id))
        return false;
    const auto children = library.children(playlist.id);
    return std::any_of(children.cbegin(), children.cend(),
                       [&](const PlaylistDTO *child) { return matchesAt(library, *child, query, walked); });
}

void walk(const LibraryStore &library, const std::vector<const PlaylistDTO *> &level, const QString &query,
          const QSet<QString> &expansion, int depth, Walked &walked, std::vector<Visible> &rows) {
    for (const PlaylistDTO *playlist : level) {
        if (!matches(library, *playlist, query))
            continue;
        rows.push_back({playlist, depth});
        const bool isOpen = playlist->isFolder && (!query.isEmpty() || expansion.contains(playlist->id));
        if (isOpen && isNew(walked, playlist->id))
            walk(library, library.children(playlist->id), query, expansion, depth + 1, walked, rows);
    }
}

void collectLeaves(const LibraryStore &library, const QString &folderId, Walked &walked, QSet<QString> &leaves) {
    if (!isNew(walked, folderId))
        return;
    for (const PlaylistDTO *child : library.children(folderId)) {
        if (!child->isFolder)
            leaves.insert(child->id);
        else
            collectLeaves(library, child->id, walked, leaves);
    }
}

} // namespace

Scope scopeOf(const QString &searchText) {
    const QString lower = searchText.toLower();
    if (lower.startsWith("apple:"_L1))
        return Scope::apple;
    if (lower.startsWith("spotify:"_L1))
        return Scope::spotify;
    return Scope::all;
}

QString queryOf(const QString &searchText) {
    QStringView query(searchText);
    for (const QLatin1StringView prefix : {"apple:"_L1, "spotify:"_L1}) {
        if (query.startsWith(prefix, Qt::CaseInsensitive))
            query = query.sliced(prefix.size());
    }
    return withoutBlanks(query).toString();
}

bool shows(Scope scope, PlaylistSourceId source) {
    switch (scope) {
    case Scope::all:
        return true;
    case Scope::apple:
        return source == PlaylistSourceId::apple;
    case Scope::spotify:
        return source == PlaylistSourceId::spotify;
    }
    return true;
}

std::vector<PlaylistSourceId> sources(const LibraryStore &library) {
    std::vector<PlaylistSourceId> found;
    for (const PlaylistSourceId source : {PlaylistSourceId::apple, PlaylistSourceId::spotify}) {
        const auto &playlists = library.playlists();
        if (std::any_of(playlists.cbegin(), playlists.cend(),
                        [source](const PlaylistDTO &playlist) { return playlist.source == source; }))
            found.push_back(source);
    }
    return found;
}

int playlistCount(const LibraryStore &library, PlaylistSourceId source) {
    const auto &playlists = library.playlists();
    return static_cast<int>(std::count_if(playlists.cbegin(), playlists.cend(), [source](const PlaylistDTO &playlist) {
        return playlist.source == source && !playlist.isFolder;
    }));
}

bool matches(const LibraryStore &library, const PlaylistDTO &playlist, const QString &query) {
    Walked walked;
    return matchesAt(library, playlist, query, walked);
}

std::vector<Visible> visibleRows(const LibraryStore &library, PlaylistSourceId source, const QString &query,
                                 const QSet<QString> &expansion) {
    std::vector<const PlaylistDTO *> roots = library.roots();
    std::erase_if(roots, [source](const PlaylistDTO *root) { return root->source != source; });
    std::vector<Visible> rows;
    Walked walked;
    walk(library, roots, query, expansion, 0, walked, rows);
    return rows;
}

QSet<QString> descendantLeafIds(const LibraryStore &library, const QString &folderId) {
    QSet<QString> leaves;
    Walked walked;
    collectLeaves(library, folderId, walked, leaves);
    return leaves;
}

QSet<QString> expandFolders(const LibraryStore &library, const QSet<QString> &ids) {
    QSet<QString> result;
    for (const QString &id : ids) {
        const PlaylistDTO *playlist = library.playlist(id);
        if (playlist && playlist->isFolder)
            result.unite(descendantLeafIds(library, id));
        else
            result.insert(id);
    }
    return result;
}

QSet<QString> foldersOf(const LibraryStore &library, const QSet<QString> &ids) {
    QSet<QString> folders;
    for (const QString &id : ids) {
        const PlaylistDTO *playlist = library.playlist(id);
        if (playlist && playlist->isFolder)
            folders.insert(id);
    }
    return folders;
}

int selectedPlaylistCount(const LibraryStore &library) {
    const QSet<QString> &selection = library.selection();
    return static_cast<int>(std::count_if(selection.cbegin(), selection.cend(), [&library](const QString &id) {
        const PlaylistDTO *playlist = library.playlist(id);
        return playlist && !playlist->isFolder;
    }));
}

} // namespace zelk::SidebarTree

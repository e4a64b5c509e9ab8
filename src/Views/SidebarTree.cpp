#include "Views/SidebarTree.h"

#include "Support/Blanks.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::SidebarTree {

namespace {

// A library may list an id more than once, and an entry may so contain itself. Each walk therefore goes into an id
// once: it ends, and in time.
using Walked = QSet<QString>;

bool isNew(Walked &walked, const QString &folderId) {
    const auto before = walked.size();
    walked.insert(folderId);
    return walked.size() > before;
}

struct Walk {
    const LibraryStore &library;
    const Filter filter;
    const bool opensAll;
    const QSet<QString> &expansion;
    Walked walked;
    std::vector<Visible> rows;

    void through(const std::vector<const PlaylistDTO *> &level, int depth) {
        for (const PlaylistDTO *playlist : level) {
            if (!filter.matches(*playlist))
                continue;
            rows.push_back({playlist, depth});
            const bool isOpen = playlist->isFolder && (opensAll || expansion.contains(playlist->id));
            if (isOpen && isNew(walked, playlist->id))
                through(library.children(playlist->id), depth + 1);
        }
    }
};

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

Filter::Filter(const LibraryStore &library, const QString &query) : m_query(QLocale().toLower(query)) {
    if (m_query.isEmpty())
        return;
    // From each match up: so each entry is met once, however deep it lies.
    QHash<QString, std::vector<const PlaylistDTO *>> folders;
    std::vector<const PlaylistDTO *> matching;
    for (const PlaylistDTO &playlist : library.playlists()) {
        if (playlist.isFolder)
            folders[playlist.id].push_back(&playlist);
        if (matchesByName(playlist))
            matching.push_back(&playlist);
    }
    while (!matching.empty()) {
        const std::optional<QString> around = matching.back()->parentId;
        matching.pop_back();
        if (!around || !isNew(m_around, *around))
            continue;
        const auto above = folders.value(*around);
        matching.insert(matching.end(), above.cbegin(), above.cend());
    }
}

bool Filter::matchesByName(const PlaylistDTO &playlist) const {
    return QLocale().toLower(playlist.name).contains(m_query);
}

bool Filter::matches(const PlaylistDTO &playlist) const {
    return m_query.isEmpty() || matchesByName(playlist) || (playlist.isFolder && m_around.contains(playlist.id));
}

std::vector<Visible> visibleRows(const LibraryStore &library, PlaylistSourceId source, const QString &query,
                                 const QSet<QString> &expansion) {
    std::vector<const PlaylistDTO *> roots = library.roots();
    std::erase_if(roots, [source](const PlaylistDTO *root) { return root->source != source; });
    Walk walk{library, Filter(library, query), !query.isEmpty(), expansion, {}, {}};
    walk.through(roots, 0);
    return std::move(walk.rows);
}

QSet<QString> descendantLeafIds(const LibraryStore &library, const QString &folderId) {
    QSet<QString> leaves;
    Walked walked;
    collectLeaves(library, folderId, walked, leaves);
    return leaves;
}

QSet<QString> expandFolders(const LibraryStore &library, const QSet<QString> &ids) {
    QSet<QString> result;
    Walked walked; // of a folder in a selected folder, all is in the result
    for (const QString &id : ids) {
        const PlaylistDTO *playlist = library.playlist(id);
        if (playlist && playlist->isFolder)
            collectLeaves(library, id, walked, result);
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

#pragma once

#include "State/LibraryStore.h"

#include <QSet>
#include <QString>

#include <vector>

// What of the library the sidebar shows, and what selecting in it means. Pure functions of the library and the filter.
namespace zelk::SidebarTree {

enum class Scope { all, apple, spotify };

// A filter text that begins with "apple:" or "spotify:", in any case, shows that source alone.
Scope scopeOf(const QString &searchText);
// The text without those prefixes and without spaces and tabs at its ends.
QString queryOf(const QString &searchText);
bool shows(Scope scope, PlaylistSourceId source);

// The sources that occur in the library, in their fixed order.
std::vector<PlaylistSourceId> sources(const LibraryStore &library);
// The playlists of a source that aren't folders, whatever the filter.
int playlistCount(const LibraryStore &library, PlaylistSourceId source);

// Which of a library's entries a query leaves. Finding them costs one walk through the library.
class Filter {
public:
    Filter(const LibraryStore &library, const QString &query);

    // Whether the playlist or, for a folder, anything under it has the query in its name.
    bool matches(const PlaylistDTO &playlist) const;

private:
    bool matchesByName(const PlaylistDTO &playlist) const;

    QString m_query;        // in lower case
    QSet<QString> m_around; // the ids of what has a match right below
};

struct Visible {
    const PlaylistDTO *playlist = nullptr;
    int depth = 0;
};

// The rows of a source's section. A query opens every folder; otherwise those in `expansion` are open.
std::vector<Visible> visibleRows(const LibraryStore &library, PlaylistSourceId source, const QString &query,
                                 const QSet<QString> &expansion);

// Every playlist under a folder, at any depth; no folders.
QSet<QString> descendantLeafIds(const LibraryStore &library, const QString &folderId);
// The selection with each folder replaced by what is in it. Ids that the library doesn't know stay.
QSet<QString> expandFolders(const LibraryStore &library, const QSet<QString> &ids);
// Those of the ids that are folders.
QSet<QString> foldersOf(const LibraryStore &library, const QSet<QString> &ids);
// How many of the selected ids are playlists that a sync would take.
int selectedPlaylistCount(const LibraryStore &library);

} // namespace zelk::SidebarTree

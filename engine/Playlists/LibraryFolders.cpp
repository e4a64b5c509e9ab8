#include "Playlists/LibraryFolders.h"

#include "Transport/Tagged.h"

#include <QHash>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr std::size_t top = static_cast<std::size_t>(-1);

/// The folder that each list names as its own, hidden ones too.
std::vector<std::size_t> namedParents(const std::vector<LibraryList> &lists) {
    QHash<QString, std::size_t> folders;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const ReadList &list = lists[i].content;
        if (list.isFolder && !list.key.isEmpty() && !folders.contains(list.key)) {
            folders.insert(list.key, i);
        }
    }
    std::vector<std::size_t> parents;
    for (const LibraryList &list : lists) {
        const QString &key = list.content.parentKey;
        parents.push_back(key.isEmpty() ? top : folders.value(key, top));
    }
    return parents;
}

/// Cuts each ring of folders open at one of them, which then lies at the top.
void openRings(std::vector<std::size_t> &parents) {
    enum class State : char { Unseen, OnPath, Sound };
    std::vector<State> states(parents.size(), State::Unseen);
    std::vector<std::size_t> path;
    for (std::size_t i = 0; i < parents.size(); ++i) {
        std::size_t at = i;
        for (; at != top && states[at] == State::Unseen; at = parents[at]) {
            states[at] = State::OnPath;
            path.push_back(at);
        }
        if (at != top && states[at] == State::OnPath) {
            parents[path.back()] = top;
        }
        for (const std::size_t passed : path) {
            states[passed] = State::Sound;
        }
        path.clear();
    }
}

/// Each list's parent above all hidden folders. Every folder is passed once: what was found is kept on the way.
void passHidden(const std::vector<LibraryList> &lists, std::vector<std::size_t> &parents) {
    for (std::size_t i = 0; i < parents.size(); ++i) {
        std::size_t shown = parents[i];
        while (shown != top && lists[shown].isHidden) {
            shown = parents[shown];
        }
        for (std::size_t at = i; at != top && parents[at] != shown;) {
            const std::size_t above = std::exchange(parents[at], shown);
            if (above == top || !lists[above].isHidden) {
                break;
            }
            at = above;
        }
    }
}

void makeKeysUnique(std::vector<LibraryList> &lists) {
    QHash<QString, int> seen;
    for (LibraryList &list : lists) {
        QString &key = list.content.key;
        if (key.isEmpty()) {
            key = u"name "_s + list.content.name;
        }
        const int before = seen[key]++;
        if (before > 0) { // the sign can't stand in a text of XML
            key += u"\x1%1"_s.arg(before);
        }
    }
}

/// Gives covers upward, from the last list to the first of each folder's, so that the first ones win.
void collectCovers(std::vector<LibraryList> &lists, const std::vector<std::size_t> &parents) {
    QSet<std::size_t> wanting;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (lists[i].content.isFolder && lists[i].content.artwork == ArtworkRef::none()) {
            wanting.insert(i);
        }
    }
    QHash<std::size_t, QStringList> covers;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const auto *mosaic = caseOf<ArtworkRef::Mosaic>(lists[i].content.artwork);
        if (!mosaic || lists[i].isHidden) {
            continue;
        }
        for (std::size_t at = parents[i]; at != top && wanting.contains(at); at = parents[at]) {
            QStringList &collected = covers[at];
            if (collected.size() >= mosaicTiles) { // and so have those above
                break;
            }
            collected += mosaic->trackIds.mid(0, mosaicTiles - collected.size());
        }
    }
    for (auto folder = covers.cbegin(); folder != covers.cend(); ++folder) {
        lists[folder.key()].content.artwork = ArtworkRef::mosaic(folder.value());
    }
}

} // namespace

void arrangeLists(std::vector<LibraryList> &lists) {
    std::vector<std::size_t> parents = namedParents(lists);
    openRings(parents);
    passHidden(lists, parents);
    makeKeysUnique(lists);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        lists[i].content.parentKey = parents[i] == top ? QString() : lists[parents[i]].content.key;
    }
    collectCovers(lists, parents);
}

std::vector<ReadList> takeShownLists(std::vector<LibraryList> &lists) {
    std::vector<ReadList> shown;
    for (LibraryList &list : lists) {
        if (!list.isHidden) {
            shown.push_back(std::move(list.content));
        }
    }
    return shown;
}

} // namespace zelk::engine

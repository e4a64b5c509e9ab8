// The Music app's exported library. The input is the file.
#include "PlaylistChecks.h"

#include "Playlists/LibraryFolders.h"
#include "Playlists/LibraryPlaylists.h"
#include "Transport/Tagged.h"

#include <QHash>

namespace zelk::fuzz {

namespace {

void checkFolders(const engine::ReadFile &file) {
    QHash<QString, const engine::ReadList *> byKey;
    for (const auto &list : file.lists) {
        holds(!list.key.isEmpty() && !byKey.contains(list.key), "each list has a key of its own");
        byKey.insert(list.key, &list);
    }
    for (const auto &list : file.lists) {
        std::size_t depth = 0;
        for (QString above = list.parentKey; !above.isEmpty(); above = byKey.value(above)->parentKey) {
            holds(byKey.contains(above) && byKey.value(above)->isFolder, "a list lies in a folder that is shown");
            holds(++depth <= file.lists.size(), "folders don't lie in each other");
        }
        if (const auto *const mosaic = caseOf<ArtworkRef::Mosaic>(list.artwork))
            holds(mosaic->trackIds.size() <= engine::mosaicTiles, "a picture is of a few covers");
    }
}

} // namespace

void fuzz(QByteArrayView input) {
    checkPlaylist(input, [](QIODevice &device, engine::ReadLimits limits) {
        auto file = engine::readLibrary(device, limits);
        holds(file.whole || file.lists.empty(), "a library is read as a whole or not at all");
        holds(static_cast<qint64>(file.lists.size()) <= limits.lists, "there are no more lists than the limit");
        checkFolders(file);
        return file;
    });
}

} // namespace zelk::fuzz

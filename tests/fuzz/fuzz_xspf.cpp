// XSPF lists. The input is the file.
#include "PlaylistChecks.h"

#include "Playlists/XspfPlaylist.h"

namespace zelk::fuzz {

void fuzz(QByteArrayView input) {
    checkPlaylist(input, [](QIODevice &device, engine::ReadLimits limits) {
        auto file = engine::readXspfPlaylist(device, QStringLiteral("/music/lists"), limits);
        holds(file.lists.size() <= 1, "a file of this kind is at most one list");
        holds(rowsIn(file) <= limits.tracks, "there are no more rows than tracks may be");
        return file;
    });
}

} // namespace zelk::fuzz

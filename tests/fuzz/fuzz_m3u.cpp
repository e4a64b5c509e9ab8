// M3U and M3U8 lists. The input is the file.
#include "PlaylistChecks.h"

#include "Playlists/M3uPlaylist.h"

namespace zelk::fuzz {

void fuzz(QByteArrayView input) {
    checkPlaylist(input, [](QIODevice &device, engine::ReadLimits limits) {
        auto file = engine::readM3uPlaylist(device, QStringLiteral("/music/lists"), limits);
        holds(file.lists.size() == 1, "a file of this kind is one list");
        holds(rowsIn(file) <= limits.tracks, "there are no more rows than tracks may be");
        return file;
    });
}

} // namespace zelk::fuzz

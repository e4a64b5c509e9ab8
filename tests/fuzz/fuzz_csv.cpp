// Tables of tracks. The input is the file.
#include "PlaylistChecks.h"

#include "Playlists/CsvPlaylist.h"

#include <QSet>

namespace zelk::fuzz {

void fuzz(QByteArrayView input) {
    checkPlaylist(input, [](QIODevice &device, engine::ReadLimits limits) {
        auto file = engine::readCsvPlaylist(device, limits);
        QSet<QString> names;
        for (const auto &list : file.lists)
            names.insert(list.name);
        holds(names.size() == static_cast<qsizetype>(file.lists.size()), "a table has no two lists of one name");
        holds(rowsIn(file) <= limits.tracks, "there are no more rows than tracks may be");
        return file;
    });
}

} // namespace zelk::fuzz

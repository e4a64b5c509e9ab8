#pragma once

#include <QStringList>

namespace zelk::engine {

/// Where a table of tracks keeps what; -1 where it has no such column.
struct CsvColumns {
    int title = -1;
    int artist = -1;
    int album = -1;
    int duration = -1;
    bool durationInMs = false;
    int image = -1;
    int isrc = -1;
    int list = -1;
    int uri = -1; ///< The service's address of the track.
};

/// Finds the columns by their names, without regard to case, accents, signs or order, in the languages of the common
/// exporters. Of two columns that would do, the one with the more exact name is taken.
CsvColumns findColumns(const QStringList &header);

} // namespace zelk::engine

#pragma once

#include "Playlists/ReadLimits.h"

#include <QIODevice>

namespace zelk::engine {

/// Reads an exporter's table of tracks, row by row. Lists come in the order in which a column first names them. A table
/// beyond the limits is cut there.
ReadFile readCsvPlaylist(QIODevice &device, ReadLimits limits = {});

} // namespace zelk::engine

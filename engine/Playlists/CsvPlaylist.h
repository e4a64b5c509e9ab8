#pragma once

#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// Reads an exporter's table of tracks. Lists come in the order in which a column first names them.
ReadFile readCsvPlaylist(const QByteArray &bytes);

} // namespace zelk::engine

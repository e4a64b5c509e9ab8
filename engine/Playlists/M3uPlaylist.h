#pragma once

#include "Playlists/ReadLimits.h"

#include <QIODevice>

namespace zelk::engine {

/// Reads an M3U or M3U8 list, line by line. Paths are taken relative to `folder`, the absolute path of the folder the
/// list lies in. A list beyond the limits is cut there.
ReadFile readM3uPlaylist(QIODevice &device, const QString &folder, ReadLimits limits = {});

/// Gives a track without a title the one that its file's name tells, and the artist if it has none.
void takeEntryName(const QString &entry, ListedTrack &track);

} // namespace zelk::engine

#pragma once

#include "Playlists/ReadLimits.h"

#include <QIODevice>

namespace zelk::engine {

/// Reads an XSPF list. Locations and images are taken relative to `folder`, the absolute path of the folder the list
/// lies in. A file that breaks off, or that is beyond the limits, gives the tracks before that.
ReadFile readXspfPlaylist(QIODevice &device, const QString &folder, ReadLimits limits = {});

} // namespace zelk::engine

#pragma once

#include "Playlists/ReadLimits.h"

#include <QIODevice>

namespace zelk::engine {

/// Reads the library that the Music app exports, a property list in XML: its playlists with their folders, without
/// those that the app hides or makes itself. The order of keys doesn't matter. A file that breaks off, or is beyond the
/// limits, or isn't such a library, gives nothing and a warning: half a library would look like one from which lists
/// have been deleted.
ReadFile readLibrary(QIODevice &device, ReadLimits limits = {});

} // namespace zelk::engine

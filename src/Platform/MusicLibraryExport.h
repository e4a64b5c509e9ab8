#pragma once

#include "Platform/MusicLibrary.h"

class QIODevice;

namespace zelk {

/// The items of an exported library, a property list in XML, in the file's order. An item without an ID is left out.
/// Entities are refused where they are declared, since a library has no use for them and a forged one could grow by
/// them without bounds. Throws `MusicLibraryError`, also for a list that ends early.
std::vector<MusicLibrary::MediaItem> readMusicLibraryExport(QIODevice &device);

} // namespace zelk

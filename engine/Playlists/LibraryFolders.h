#pragma once

#include "Playlists/ListedTrack.h"

#include <vector>

namespace zelk::engine {

/// Of so many covers a list's picture is made.
constexpr qsizetype mosaicTiles = 4;

/// A playlist of the Music app's library, as it stands in the export.
struct LibraryList {
    ReadList content;         ///< Its keys are persistent IDs, as the export has them.
    bool isHidden = false;    ///< Made by the app itself, or hidden in it.
    std::vector<qint64> rows; ///< Track IDs.
};

/// Makes the keys unique and the parents true: a list lies in the nearest folder above it that is shown, and at the top
/// if there is none or if the folders lie in each other. A folder without covers of its own gets those of what is in
/// it.
void arrangeLists(std::vector<LibraryList> &lists);

/// The lists that are shown, in their order.
std::vector<ReadList> takeShownLists(std::vector<LibraryList> &lists);

} // namespace zelk::engine

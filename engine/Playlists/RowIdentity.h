#pragma once

#include "Matching/Scorer.h"
#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// Names the recording that a row asks for, so that the same row in two lists, or a row that has moved, is recognised:
/// a hash of the folded title with its version, the artists and the length in whole seconds.
QString rowKeyOf(const ListedTrack &track, const Probe &probe);

Probe probeOf(const ListedTrack &track);

/// "Artist - Title", or the title alone.
QString labelOf(const ListedTrack &track);

} // namespace zelk::engine

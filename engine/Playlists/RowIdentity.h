#pragma once

#include "Matching/Scorer.h"
#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// Names the recording that a row asks for, so that the same row in two lists, or a row that has moved, is recognised:
/// a hash of the folded title with its version and the artists, ":" and the length in whole seconds.
QString rowKeyOf(const ListedTrack &track, const Probe &probe);

/// What the keys of one recording have in common, however long a list says that it is.
QString keyWithoutLength(const QString &rowKey);
/// Whether two keys differ in no more than a few seconds of length, as when a list has been exported anew.
bool mayBeOneRecording(const QString &rowKey, const QString &other);

/// A hash of what the list says of a row, as it stands there: the same for as long as the list says the same, while the
/// key changes with each better reading of titles.
QString spellingOf(const ListedTrack &track);

Probe probeOf(const ListedTrack &track);

/// "Artist - Title", or the title alone.
QString labelOf(const ListedTrack &track);

} // namespace zelk::engine

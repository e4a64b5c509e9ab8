#pragma once

#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// Reads an M3U or M3U8 list. Paths are taken relative to `folder`, the absolute path of the folder the list lies in.
ReadFile readM3uPlaylist(const QByteArray &bytes, const QString &folder);

/// The absolute local path that a playlist's entry means: relative to `folder`, with "file://" and percent escapes
/// undone and backslashes turned. Empty for an address elsewhere.
QString resolvedLocation(const QString &entry, const QString &folder);

/// Gives a track that nothing describes the artist and title that its file's name tells.
void takeEntryName(const QString &entry, ListedTrack &track);

} // namespace zelk::engine

#pragma once

#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// Reads an XSPF list. Locations are taken relative to `folder`, the absolute path of the folder the list lies in. A
/// file that breaks off gives the tracks before that.
ReadFile readXspfPlaylist(const QByteArray &bytes, const QString &folder);

} // namespace zelk::engine

#pragma once

#include "Platform/ConsentStatus.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QString>

#include <vector>

namespace zelk {

// Where playlists will come from, in words; empty when there is nothing. The connected account hides the library of
// this machine, which is only its stand-in.
QString playlistSummary(bool appleMusicConnected, bool spotifyConnected, ConsentStatus localAccess);

// Where audio will come from; empty when every source is off.
QString sourcesSummary(const std::vector<SourceId> &sources);

} // namespace zelk

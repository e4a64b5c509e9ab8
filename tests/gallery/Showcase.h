#pragma once

#include "Transport/HelperEvent.h"
#include "Transport/HelperProtocolCatalogue.h"
#include "Transport/HelperProtocolConfig.h"

#include <QSet>

#include <vector>

/// The made-up library of a DJ and one run over it, for pictures of the window.
namespace zelk::Showcase {

/// How many covers the library's references name: 0 to this.
inline constexpr int covers = 16;

std::vector<PlaylistDTO> library();
/// The two playlists that the run is about.
QSet<QString> selection();
/// A configuration with a tunnel that is on.
SafeConfig config();
std::vector<PreviewTrackDTO> preview();
/// Each state of a row is in sight; the run goes on.
std::vector<ServerEvent> run();
/// What ends it.
ServerEvent runEnd();
ServerEvent leftovers();
ServerEvent tunnelStatus();

} // namespace zelk::Showcase

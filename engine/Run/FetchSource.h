#pragma once

#include "Output/TrackWriter.h"
#include "Run/RunTypes.h"

#include <memory>

namespace zelk::engine {

/// If an order's source is an address of the web, downloads it and lets the order be about the downloaded file, which
/// lasts as long as what is returned. Throws what fetchAudio() does.
std::shared_ptr<const AudioFile> fetchSource(WriteOrder &order, WriteHooks &hooks, const RunServices &services,
                                             std::stop_token stop);

} // namespace zelk::engine

#include "Run/RunTypes.h"

#include <algorithm>

namespace zelk::engine {

namespace {

constexpr qint64 mostTracksAtOnce = 64;

} // namespace

int RunRequest::concurrency() const {
    const qint64 wanted = options.concurrency.value_or(config.run.concurrency);
    return static_cast<int>(std::clamp<qint64>(wanted, 1, mostTracksAtOnce));
}

MatchPreferences RunRequest::preferences() const {
    MatchPreferences preferences;
    preferences.floor = options.qualityFloor.value_or(config.quality.floor);
    preferences.losslessOnly = config.quality.losslessOnly;
    preferences.bestQuality = config.quality.bestQuality;
    preferences.sources = config.sources;
    return preferences;
}

} // namespace zelk::engine

#include "Store/EngineConfig.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr qint64 mostTracksAtOnce = 64;

std::optional<QString> objectionTo(const SafeConfig::Run &run) {
    if (run.concurrency < 1 || run.concurrency > mostTracksAtOnce) {
        return u"patch.run.concurrency: must be from 1 to %1"_s.arg(mostTracksAtOnce);
    }
    if (run.searchCount < 1) {
        return u"patch.run.searchCount: must be at least 1"_s;
    }
    // The negated comparisons refuse what isn't a number as well.
    if (!(run.toleranceSec >= 0)) {
        return u"patch.run.toleranceSec: must not be negative"_s;
    }
    if (!(run.searchTimeoutSec > 0)) {
        return u"patch.run.searchTimeoutSec: must be more than 0"_s;
    }
    if (!(run.cooloffHours >= 0)) {
        return u"patch.run.cooloffHours: must not be negative"_s;
    }
    return std::nullopt;
}

} // namespace

bool EngineConfig::hides(PlaylistSourceId source) const {
    return !(source == PlaylistSourceId::spotify ? spotifyConnected : appleMusicConnected).value_or(true);
}

std::optional<QString> objectionTo(const ConfigPatch &patch) {
    if (patch.run) {
        if (const auto objection = objectionTo(*patch.run)) {
            return objection;
        }
    }
    if (patch.outputDir && patch.outputDir->trimmed().isEmpty()) {
        return u"patch.outputDir: must not be empty"_s;
    }
    return std::nullopt;
}

} // namespace zelk::engine

#include "Store/EngineConfig.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr qint64 mostTracksAtOnce = 64;
/// As many as are ever weighed for one track.
constexpr qint64 mostResults = 200;
constexpr double mostSeconds = 24 * 60 * 60;
constexpr double mostHours = 365 * 24;

/// Refuses what isn't a number as well.
template<class Number>
bool isWithin(Number value, Number least, Number most) {
    return value >= least && value <= most;
}

std::optional<QString> objectionTo(const SafeConfig::Run &run) {
    if (!isWithin<qint64>(run.concurrency, 1, mostTracksAtOnce)) {
        return u"patch.run.concurrency: must be from 1 to %1"_s.arg(mostTracksAtOnce);
    }
    if (!isWithin<qint64>(run.searchCount, 1, mostResults)) {
        return u"patch.run.searchCount: must be from 1 to %1"_s.arg(mostResults);
    }
    if (!isWithin(run.toleranceSec, 0.0, mostSeconds)) {
        return u"patch.run.toleranceSec: must be from 0 to %1"_s.arg(mostSeconds);
    }
    if (!isWithin(run.searchTimeoutSec, 0.0, mostSeconds) || run.searchTimeoutSec == 0) {
        return u"patch.run.searchTimeoutSec: must be more than 0 and at most %1"_s.arg(mostSeconds);
    }
    if (!isWithin(run.cooloffHours, 0.0, mostHours)) {
        return u"patch.run.cooloffHours: must be from 0 to %1"_s.arg(mostHours);
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
    if (patch.outputDir && patch.outputDir->contains(QChar(0))) { // a path would end there
        return u"patch.outputDir: must not contain U+0000"_s;
    }
    return std::nullopt;
}

} // namespace zelk::engine

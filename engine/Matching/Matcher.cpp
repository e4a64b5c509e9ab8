#include "Matching/Matcher.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr double byItselfTotal = 0.90;
constexpr double byItselfArtist = 0.70;
constexpr double byItselfLengthSec = 10;
constexpr double byItselfLead = 0.05;
constexpr double doubtfulTotal = 0.70;
constexpr double doubtfulTitle = 0.60;
constexpr double doubtfulArtist = 0.50;
constexpr double isrcLengthSec = 20;
constexpr double isrcConfidence = 0.95;

/// Bitrates of constant 320 kbps streams are reported with a little less by some encoders' headers.
constexpr int kbps320 = 315;

bool acceptedByIsrc(const Score &score) {
    return score.sameIsrc && score.lengthDelta.value_or(0) <= isrcLengthSec;
}

bool acceptable(const Score &score) {
    return acceptedByIsrc(score) ||
           (score.total >= byItselfTotal && score.sameVersion && score.sameNumbers && score.artist &&
            *score.artist >= byItselfArtist && score.lengthDelta.value_or(0) <= byItselfLengthSec);
}

bool plausible(const Score &score) {
    return acceptedByIsrc(score) ||
           (score.total >= doubtfulTotal && score.title >= doubtfulTitle && score.artist.value_or(1) >= doubtfulArtist);
}

QString reasonAgainst(const Score &score, const Probe &row, const Probe &file) {
    if (acceptable(score)) {
        return {};
    }
    if (!score.sameVersion) {
        const QString version = file.title.version.join(u' ');
        return version.isEmpty() ? u"Not the wanted version: "_s + row.title.version.join(u' ')
                                 : u"Another version: "_s + version;
    }
    if (!score.sameNumbers) {
        return u"Another number in the title"_s;
    }
    if (score.lengthDelta.value_or(0) > byItselfLengthSec) {
        return u"Length differs by %1 s"_s.arg(std::lround(*score.lengthDelta));
    }
    if (!score.artist) {
        return u"The artist isn't known"_s;
    }
    if (*score.artist < byItselfArtist) {
        return u"Another artist"_s;
    }
    return u"The title fits only in part"_s;
}

int rankOf(std::optional<SourceId> origin, const MatchPreferences &preferences) {
    const auto place =
        origin ? std::find(preferences.sources.begin(), preferences.sources.end(), *origin) : preferences.sources.end();
    return static_cast<int>(place - preferences.sources.begin());
}

} // namespace

bool allowed(const AudioFile &file, const MatchPreferences &preferences) {
    if (file.origin &&
        std::find(preferences.sources.begin(), preferences.sources.end(), *file.origin) == preferences.sources.end()) {
        return false;
    }
    if (file.lossless) {
        return true;
    }
    if (preferences.losslessOnly || preferences.floor == QualityFloor::flac) {
        return false;
    }
    return preferences.floor == QualityFloor::any || file.bitrateKbps >= kbps320;
}

bool betterCopy(const AudioFile &a, const AudioFile &b, const MatchPreferences &preferences) {
    if (a.lossless != b.lossless) {
        return a.lossless;
    }
    if (a.bitrateKbps != b.bitrateKbps) {
        return a.bitrateKbps > b.bitrateKbps;
    }
    return rankOf(a.origin, preferences) < rankOf(b.origin, preferences);
}

MatchResult findMatch(const Probe &row, const MatchIndex &index, const MatchPreferences &preferences) {
    MatchResult result;
    std::vector<MatchCandidate> found;
    for (const int position : index.candidates(row)) {
        const Score score = scoreOf(row, index.probe(position));
        if (!plausible(score)) {
            continue;
        }
        if (!allowed(index.file(position), preferences)) {
            ++result.shutOut;
            continue;
        }
        const double confidence = acceptedByIsrc(score) ? std::max(score.total, isrcConfidence) : score.total;
        found.push_back({position, score, confidence, reasonAgainst(score, row, index.probe(position))});
    }
    std::sort(found.begin(), found.end(), [&](const MatchCandidate &a, const MatchCandidate &b) {
        return a.confidence != b.confidence ? a.confidence > b.confidence
                                            : index.file(a.position).path < index.file(b.position).path;
    });
    if (found.empty()) {
        return result;
    }

    const Probe &bestProbe = index.probe(found.front().position);
    const bool certain = acceptedByIsrc(found.front().score);
    MatchCandidate *choice = acceptable(found.front().score) ? &found.front() : nullptr;
    bool contested = false;
    for (MatchCandidate &candidate : found) {
        if (sameRecording(bestProbe, index.probe(candidate.position))) {
            if (choice && preferences.bestQuality && acceptable(candidate.score) &&
                betterCopy(index.file(candidate.position), index.file(choice->position), preferences)) {
                choice = &candidate;
            }
        } else if (!certain && found.front().confidence - candidate.confidence < byItselfLead) {
            contested = true;
            candidate.reason =
                candidate.reason.isEmpty() ? u"Two recordings fit about equally well"_s : candidate.reason;
        }
    }
    if (choice && !contested) {
        result.band = MatchResult::Band::Accepted;
        result.candidates = {*choice};
        return result;
    }
    if (contested && found.front().reason.isEmpty()) {
        found.front().reason = u"Two recordings fit about equally well"_s;
    }
    result.band = MatchResult::Band::Doubtful;
    result.candidates = std::move(found);
    return result;
}

} // namespace zelk::engine

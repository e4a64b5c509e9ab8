#include "Matching/Matcher.h"

#include <algorithm>
#include <cmath>
#include <tuple>

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

/// A limit is reached in spite of what binary fractions lose.
bool reaches(double value, double limit) {
    return value >= limit - 1e-9;
}

bool within(std::optional<double> lengthDelta, double limit) {
    return reaches(limit, lengthDelta.value_or(0));
}

bool acceptedByIsrc(const Score &score) {
    return score.sameIsrc && within(score.lengthDelta, isrcLengthSec);
}

bool acceptable(const Score &score) {
    return acceptedByIsrc(score) ||
           (reaches(score.total, byItselfTotal) && score.sameVersion && score.sameBareVersion && score.sameNumbers &&
            score.artist && reaches(*score.artist, byItselfArtist) && within(score.lengthDelta, byItselfLengthSec));
}

bool plausible(const Score &score) {
    return acceptedByIsrc(score) || (reaches(score.total, doubtfulTotal) && reaches(score.title, doubtfulTitle) &&
                                     reaches(score.artist.value_or(1), doubtfulArtist));
}

QString lengthReason(const Score &score) {
    return u"Length differs by %1 s"_s.arg(std::lround(*score.lengthDelta));
}

/// What costs most where nothing forbids the file.
QString greatestLoss(const Score &score) {
    const double title = titleWeight * (1 - score.title);
    const double artist = artistWeight * (1 - score.artist.value_or(1));
    const double length = lengthWeight * (1 - score.length);
    const double album = albumWeight * (1 - score.album);
    const double most = std::max({title, artist, length, album});
    return most == title    ? u"The title fits only in part"_s
           : most == artist ? u"The artist fits only in part"_s
           : most == length ? lengthReason(score)
                            : u"Another album"_s;
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
    if (!score.sameBareVersion) {
        const QString version = file.title.bareVersion.join(u' ');
        return version.isEmpty() ? u"Not the wanted version: "_s + row.title.bareVersion.join(u' ')
                                 : u"Another version: "_s + version;
    }
    if (!score.sameNumbers) {
        return u"Another number in the title"_s;
    }
    if (!within(score.lengthDelta, byItselfLengthSec)) {
        return lengthReason(score);
    }
    if (!score.artist) {
        return u"The artist isn't known"_s;
    }
    if (!reaches(*score.artist, byItselfArtist)) {
        return u"Another artist"_s;
    }
    return greatestLoss(score);
}

int rankOf(std::optional<SourceId> origin, const MatchPreferences &preferences) {
    const auto place =
        origin ? std::find(preferences.sources.begin(), preferences.sources.end(), *origin) : preferences.sources.end();
    return static_cast<int>(place - preferences.sources.begin());
}

/// The files that are more than missing, in no order.
std::vector<MatchCandidate> fitting(const Probe &row, const MatchIndex &index,
                                    const std::function<bool(const AudioFile &)> &wanted) {
    std::vector<MatchCandidate> found;
    for (const int position : index.candidates(row, wanted)) {
        const Probe &probe = index.probe(position);
        const bool mayBeIsrc = !row.isrc.isEmpty() && row.isrc == probe.isrc;
        if (!mayBeIsrc && !reaches(wordSimilarity(row.core, probe.core), doubtfulTitle)) {
            continue; // most candidates share an artist only
        }
        const Score score = scoreOf(row, probe);
        if (plausible(score)) {
            const double confidence = acceptedByIsrc(score) ? std::max(score.total, isrcConfidence) : score.total;
            found.push_back({position, score, confidence, reasonAgainst(score, row, probe)});
        }
    }
    return found;
}

/// Whether another recording fits nearly as well. An equal ISRC settles it.
bool contested(const MatchCandidate &choice, const std::vector<MatchCandidate> &found, const MatchIndex &index) {
    return !acceptedByIsrc(choice.score) && std::any_of(found.begin(), found.end(), [&](const MatchCandidate &other) {
        return !reaches(choice.confidence - other.confidence, byItselfLead) &&
               !sameRecording(index.probe(choice.position), index.probe(other.position));
    });
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

MatchResult findMatch(const Probe &row, const MatchIndex &index, const MatchPreferences &preferences,
                      const std::function<void()> &look) {
    MatchResult result;
    const auto wanted = [&](const AudioFile &file) {
        if (look) {
            look();
        }
        return allowed(file, preferences);
    };
    std::vector<MatchCandidate> found = fitting(row, index, wanted);
    if (found.empty()) {
        result.shutOut = static_cast<int>(fitting(row, index, std::not_fn(wanted)).size());
        return result;
    }
    std::sort(found.begin(), found.end(), [&](const MatchCandidate &a, const MatchCandidate &b) {
        const AudioFile &fileA = index.file(a.position);
        const AudioFile &fileB = index.file(b.position);
        return std::tuple(!acceptedByIsrc(a.score), -a.confidence, rankOf(fileA.origin, preferences), fileA.path) <
               std::tuple(!acceptedByIsrc(b.score), -b.confidence, rankOf(fileB.origin, preferences), fileB.path);
    });

    const auto first = std::find_if(found.begin(), found.end(),
                                    [](const MatchCandidate &candidate) { return acceptable(candidate.score); });
    if (first != found.end() && !contested(*first, found, index)) {
        const MatchCandidate *choice = &*first;
        for (const MatchCandidate &copy : found) {
            if (preferences.bestQuality && acceptable(copy.score) &&
                sameRecording(index.probe(first->position), index.probe(copy.position)) &&
                betterCopy(index.file(copy.position), index.file(choice->position), preferences)) {
                choice = &copy;
            }
        }
        result.band = MatchResult::Band::Accepted;
        result.candidates = {*choice};
        return result;
    }
    for (MatchCandidate &candidate : found) {
        if (candidate.reason.isEmpty()) {
            candidate.reason = u"Two recordings fit about equally well"_s;
        }
    }
    result.band = MatchResult::Band::Doubtful;
    result.candidates = std::move(found);
    return result;
}

} // namespace zelk::engine

#pragma once

#include "Matching/MatchIndex.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace zelk::engine {

/// What the user wants of a match.
struct MatchPreferences {
    QualityFloor floor = QualityFloor::any;
    bool losslessOnly = false;
    bool bestQuality = true;
    /// The switched-on sources, the preferred first. Files of no source are always searched and come last.
    std::vector<SourceId> sources;
};

/// One file that a row may mean.
struct MatchCandidate {
    int position = -1; ///< In the index.
    Score score;
    double confidence = 0; ///< The score's total; at least 0.95 for an equal ISRC of fitting length.
    QString reason;        ///< Why it wasn't taken by itself; empty for the one that was.
};

/// What came of looking for one row.
struct MatchResult {
    enum class Band { Accepted, Doubtful, Missing };
    Band band = Band::Missing;
    /// Accepted: one. Doubtful: the likeliest first. Missing: none.
    std::vector<MatchCandidate> candidates;
    /// Missing: how many files would have fitted if their quality or source hadn't shut them out.
    int shutOut = 0;
};

/// Whether the preferences let this file be looked at.
bool allowed(const AudioFile &file, const MatchPreferences &preferences);

/// Whether `a` is the better copy of one recording: lossless, then bitrate, then the order of sources.
bool betterCopy(const AudioFile &a, const AudioFile &b, const MatchPreferences &preferences);

/// `look` is called again and again while files are looked at; what it throws ends the search.
MatchResult findMatch(const Probe &row, const MatchIndex &index, const MatchPreferences &preferences,
                      const std::function<void()> &look = {});

} // namespace zelk::engine

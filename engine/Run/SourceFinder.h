#pragma once

#include "Matching/Matcher.h"
#include "Playlists/ListedTrack.h"
#include "Store/Records.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zelk::engine {

/// What came of looking for the file of one row.
struct FoundSource {
    enum class Kind { Found, Doubtful, Missing, Late };
    Kind kind = Kind::Missing;
    AudioFile file;                       ///< Found.
    std::vector<CandidateDTO> candidates; ///< Doubtful: the best first.
    QString detail;                       ///< Missing, Late: what to do next.
};

/// Looks for the user's file of a row: what they decided on, then what the list itself names, then the best match.
class SourceFinder {
public:
    using Warn = std::function<void(const QString &message)>;

    using Now = std::function<std::chrono::steady_clock::time_point()>;
    /// How a search is limited.
    struct Limits {
        int candidates = 5;  ///< The most that are told.
        double seconds = 30; ///< That one search may take.
        Now now = [] { return std::chrono::steady_clock::now(); };
    };

    /// `absent` are the folders of the collection that aren't there.
    SourceFinder(std::shared_ptr<const MatchIndex> index, MatchPreferences preferences, Limits limits,
                 QStringList absent, Warn warn);

    FoundSource find(const ListedTrack &track, const std::optional<StoredDecision> &decision) const;
    /// What a search without a decision finds that takes the best copy in any case.
    FoundSource findBest(const ListedTrack &track) const;

    /// Equal as long as a search would find the same.
    const QString &fingerprint() const { return _fingerprint; }

private:
    std::optional<AudioFile> readNamed(const QString &path) const;
    FoundSource search(const ListedTrack &track, const MatchPreferences &preferences) const;

    std::shared_ptr<const MatchIndex> _index;
    MatchPreferences _preferences;
    Limits _limits;
    QStringList _absent;
    Warn _warn;
    QString _fingerprint;
};

} // namespace zelk::engine

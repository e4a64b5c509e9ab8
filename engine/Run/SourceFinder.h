#pragma once

#include "Matching/Matcher.h"
#include "Playlists/ListedTrack.h"
#include "Store/Records.h"

#include <functional>
#include <optional>

namespace zelk::engine {

/// What came of looking for the file of one row.
struct FoundSource {
    enum class Kind { Found, Doubtful, Missing };
    Kind kind = Kind::Missing;
    AudioFile file;                       ///< Found.
    std::vector<CandidateDTO> candidates; ///< Doubtful: the best first.
    QString detail;                       ///< Missing: what to do next.
};

/// Looks for the user's file of a row: what they decided on, then what the list itself names, then the best match.
class SourceFinder {
public:
    using Warn = std::function<void(const QString &message)>;

    /// `absent` are the folders of the collection that aren't there.
    SourceFinder(std::shared_ptr<const MatchIndex> index, MatchPreferences preferences, int mostCandidates,
                 QStringList absent, Warn warn);

    FoundSource find(const ListedTrack &track, const std::optional<StoredDecision> &decision) const;

    /// Equal as long as a search would find the same.
    const QString &fingerprint() const { return _fingerprint; }

private:
    std::optional<AudioFile> readNamed(const QString &path) const;

    std::shared_ptr<const MatchIndex> _index;
    MatchPreferences _preferences;
    int _mostCandidates;
    QStringList _absent;
    Warn _warn;
    QString _fingerprint;
};

} // namespace zelk::engine

#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace zelk::engine {

/// A file that the engine has written.
struct WrittenFile {
    qint64 id = 0;
    QString path;       ///< Absolute.
    QString sourcePath; ///< What it was made from.
    /// As that file was then; 0 for an address of the web, and of files written before this was kept.
    qint64 sourceSize = 0;
    qint64 sourceModifiedMs = 0;
    qint64 size = 0;
    qint64 modifiedMs = 0;
    double durationSec = 0;
    QString format;
    int bitrateKbps = 0;
    bool lossless = false;
    std::optional<SourceId> origin;
    int sourceKbps = 0; ///< Of what it was made from, which a conversion changes.
    QString replaces;   ///< A file of ours that is to go once this one stands; empty if there is none.
    QString lookedWith; ///< The fingerprint of the last search for a better copy that found none.

    bool operator==(const WrittenFile &) const = default;
};

/// A row that wants, or wanted, a written file. `rowKey` names the recording that the row asks for, not its place.
struct Want {
    qint64 fileId = 0;
    QString rowKey;
    QString playlistId;

    bool operator==(const Want &) const = default;
};

inline size_t qHash(const Want &want, size_t seed = 0) {
    return qHashMulti(seed, want.fileId, want.rowKey, want.playlistId);
}

/// What the user decided for a recording.
struct StoredDecision {
    enum class Kind { Take, Skip };
    Kind kind = Kind::Skip;
    QString path; ///< Of the file to take.

    bool operator==(const StoredDecision &) const = default;
};

/// A row that wasn't found and is left alone for a while, as long as there is nothing new to look through.
struct CoolOff {
    qint64 untilMs = 0;  ///< Since the epoch.
    QString fingerprint; ///< Of the collection and the preferences it was looked for with.
    QString detail;      ///< What the failure said.

    bool operator==(const CoolOff &) const = default;
};

/// A doubtful track that waits for the user, perhaps longer than this process lives.
struct PendingReview {
    QString trackId;
    QString runId;
    QString playlistId;
    QString rowKey;
    QString stem; ///< The file name, without extension, that its place in the list has given it.
    QString title;
    QString artist;
    QString album;
    double durationSec = 0;
    std::vector<CandidateDTO> candidates; ///< The best first; their urls are file URLs.
    std::optional<QString> artworkUrl;    ///< As the list says it.
    std::optional<QString> location;      ///< The file that the list itself names.

    bool operator==(const PendingReview &) const = default;
};
ZELK_JSON_FIELDS(PendingReview, trackId, runId, playlistId, rowKey, stem, title, artist, album, durationSec, candidates,
                 artworkUrl, location)

} // namespace zelk::engine

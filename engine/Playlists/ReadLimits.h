#pragma once

#include "Playlists/ListedTrack.h"

namespace zelk::engine {

/// No playlist is that large, in bytes; what is isn't looked into, since even passing over it takes long.
constexpr qint64 largestFile = 2'000'000'000;

/// What one row of a table or one line of a list may have, in characters. A quote that is never closed, or a file that
/// is no text, doesn't fill the memory with more.
constexpr qsizetype longestRow = 1'000'000;

/// No track lasts longer, in seconds: eleven days and a half.
constexpr double longestTrack = 1'000'000;

/// A length in seconds as a file tells it; 0, which is unknown, if no track has it.
inline double lengthOrUnknown(double seconds) {
    return seconds > 0 && seconds <= longestTrack ? seconds : 0;
}

/// How much one file may bring. Beyond it a file is damaged or malicious, and would only fill the memory: about half a
/// gigabyte is in use at these limits.
struct ReadLimits {
    qint64 tracks = 500'000;
    qint64 characters = 100'000'000; ///< Of all names and addresses together.
    qint64 rows = 2'000'000;         ///< Of all lists together, where lists share tracks.
    qint64 lists = 100'000;

    /// Counts one more track; false if it is too much.
    bool take(const ListedTrack &track) {
        characters -= track.title.size() + track.artist.size() + track.album.size() + track.isrc.size() +
                      track.artworkUrl.size() + track.persistentId.size() + track.location.size();
        return --tracks >= 0 && characters >= 0;
    }
};

/// What is said of the track that is too much.
inline QString tooManyTracks(qint64 most) {
    return QStringLiteral("holds more than %1 tracks, or as much text; those from here on are left out").arg(most);
}

} // namespace zelk::engine

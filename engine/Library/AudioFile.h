#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QString>

#include <optional>

namespace zelk::engine {

/// What an audio file says of itself, by its tags and its stream.
struct AudioFile {
    QString path;          ///< Absolute.
    qint64 size = 0;       ///< Bytes.
    qint64 modifiedMs = 0; ///< Milliseconds since the epoch.
    QString format;        ///< As shown: "FLAC", "MP3", "AAC", "ALAC", "WAV", "AIFF", "Ogg", …; see kindOf().
    bool lossless = false;
    int bitrateKbps = 0;    ///< 0 if unknown.
    double durationSec = 0; ///< 0 if unknown.
    QString title;
    QString artist;
    QString album;
    QString isrc;
    /// Where it came from, by the folder of the collection it lies in; none for any other folder.
    std::optional<SourceId> origin;

    bool operator==(const AudioFile &) const = default;
};

} // namespace zelk::engine

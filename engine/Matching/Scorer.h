#pragma once

#include "Matching/Similarity.h"
#include "Matching/TitleParse.h"

#include <optional>
#include <vector>

namespace zelk::engine {

constexpr double titleWeight = 0.45;
constexpr double artistWeight = 0.30;
constexpr double lengthWeight = 0.20;
constexpr double albumWeight = 0.05;

/// What is known of one recording, from a playlist row or from a file's tags, in the form in which the two are
/// compared.
struct Probe {
    ParsedTitle title;
    /// Folded, the main artist first, the featured ones of the title behind.
    QStringList artists;
    QString album; ///< Folded, without remarks; empty if unknown.
    std::optional<double> durationSec;
    QString isrc; ///< Letters and digits in upper case; empty if unknown.

    // The same once more, as it is compared.
    Phrase core;
    std::vector<Phrase> eachArtist;
    Phrase allArtists;
    Phrase albumWords;
};

/// Makes a probe from plain texts. A duration of 0 or less counts as unknown. What is longer than any name is cut.
Probe makeProbe(const QString &title, const QString &artists, const QString &album, double durationSec,
                const QString &isrc);

/// How well a file fits a row. All scores run from 0 to 1.
struct Score {
    double total = 0;
    double title = 0;
    std::optional<double> artist;      ///< Absent when either side names none.
    std::optional<double> lengthDelta; ///< Seconds, never negative; absent when either length is unknown.
    double length = 1;                 ///< How close the lengths are; 1 also where either is unknown.
    double album = 1;                  ///< 1 also where either side names none.
    bool sameVersion = true;           ///< The remarks in brackets or behind a dash.
    bool sameBareVersion = true;       ///< The words of that kind in the titles' cores.
    bool sameNumbers = true;
    bool sameIsrc = false;
};

/// The weighted mean over the present fields, the length counting 1 up to 4 s and falling to 0 at 20 s; 0.15 less for
/// another version.
Score scoreOf(const Probe &row, const Probe &file);

/// Whether two files hold one recording, so that either may serve: an equal ISRC, or equal titles and much the same
/// artists, and lengths that differ no more than encoders make them. Where the titles differ by a slip of the pen, the
/// lengths must be known and all but equal.
bool sameRecording(const Probe &a, const Probe &b);

} // namespace zelk::engine

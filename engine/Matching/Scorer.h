#pragma once

#include "Matching/TitleParse.h"

#include <optional>

namespace zelk::engine {

/// What is known of one recording, from a playlist row or from a file's tags, in the form in which the two are
/// compared.
struct Probe {
    ParsedTitle title;
    /// Folded, the main artist first, the featured ones of the title behind.
    QStringList artists;
    QString album; ///< Folded, without remarks; empty if unknown.
    std::optional<double> durationSec;
    QString isrc; ///< Letters and digits in upper case; empty if unknown.
};

/// Makes a probe from plain texts. A duration of 0 or less counts as unknown.
Probe makeProbe(const QString &title, const QString &artists, const QString &album, double durationSec,
                const QString &isrc);

/// How well a file fits a row. All scores run from 0 to 1.
struct Score {
    double total = 0;
    double title = 0;
    std::optional<double> artist;      ///< Absent when either side names none.
    std::optional<double> lengthDelta; ///< Seconds, never negative; absent when either length is unknown.
    bool sameVersion = true;
    bool sameNumbers = true;
    bool sameIsrc = false;
};

/// Weights over the present fields: title 0.45, artist 0.30, length 0.20 (1 up to 4 s, falling to 0 at 20 s), album
/// 0.05; 0.15 less for another version.
Score scoreOf(const Probe &row, const Probe &file);

/// Whether two files hold one recording, so that either may serve.
bool sameRecording(const Probe &a, const Probe &b);

} // namespace zelk::engine

#include "Matching/Scorer.h"

#include "Matching/Fold.h"
#include "Matching/Similarity.h"

#include <algorithm>
#include <cmath>

namespace zelk::engine {

namespace {

constexpr double titleWeight = 0.45;
constexpr double artistWeight = 0.30;
constexpr double lengthWeight = 0.20;
constexpr double albumWeight = 0.05;
constexpr double otherVersionMalus = 0.15;
constexpr double fullLengthSec = 4;
constexpr double noLengthSec = 20;

/// Lengths of copies of one recording differ by the encoders' padding, hardly more.
constexpr double sameRecordingSec = 4;
constexpr double sameRecordingArtist = 0.80;
constexpr double sameRecordingTitle = 0.90;

/// The share of the main artist, the rest going to how the whole lists overlap: files often lack the featured ones.
constexpr double mainArtistShare = 0.8;

double bestOf(const QString &artist, const QStringList &among) {
    double best = 0;
    for (const QString &other : among) {
        best = std::max(best, wordSimilarity(artist, other));
    }
    return best;
}

double overlap(const QStringList &a, const QStringList &b) {
    int shared = 0;
    for (const QString &artist : a) {
        shared += bestOf(artist, b) >= 0.85 ? 1 : 0;
    }
    const auto all = a.size() + b.size() - shared;
    return static_cast<double>(shared) / static_cast<double>(std::max<qsizetype>(all, 1));
}

double artistSimilarity(const QStringList &a, const QStringList &b) {
    const double main = std::max(bestOf(a.first(), b), bestOf(b.first(), a));
    const double lists = mainArtistShare * main + (1 - mainArtistShare) * overlap(a, b);
    return std::max(lists, wordSimilarity(a.join(u' '), b.join(u' ')));
}

QString normalIsrc(const QString &isrc) {
    QString plain;
    for (const QChar c : isrc.toUpper()) {
        if (c.isLetterOrNumber()) {
            plain += c;
        }
    }
    return plain;
}

} // namespace

Probe makeProbe(const QString &title, const QString &artists, const QString &album, double durationSec,
                const QString &isrc) {
    Probe probe;
    probe.title = parseTitle(title);
    probe.artists = foldedArtists(artists);
    for (const QString &featured : std::as_const(probe.title.featured)) {
        if (!probe.artists.contains(featured)) {
            probe.artists += featured;
        }
    }
    if (!album.trimmed().isEmpty()) {
        probe.album = parseTitle(album).core;
    }
    if (std::isfinite(durationSec) && durationSec > 0) {
        probe.durationSec = durationSec;
    }
    probe.isrc = normalIsrc(isrc);
    return probe;
}

Score scoreOf(const Probe &row, const Probe &file) {
    Score score;
    score.title = wordSimilarity(row.title.core, file.title.core);
    double sum = titleWeight * score.title;
    double weights = titleWeight;
    if (!row.artists.isEmpty() && !file.artists.isEmpty()) {
        score.artist = artistSimilarity(row.artists, file.artists);
        sum += artistWeight * *score.artist;
        weights += artistWeight;
    }
    if (row.durationSec && file.durationSec) {
        score.lengthDelta = std::abs(*row.durationSec - *file.durationSec);
        const double closeness = (noLengthSec - *score.lengthDelta) / (noLengthSec - fullLengthSec);
        sum += lengthWeight * std::clamp(closeness, 0.0, 1.0);
        weights += lengthWeight;
    }
    if (!row.album.isEmpty() && !file.album.isEmpty()) {
        sum += albumWeight * wordSimilarity(row.album, file.album);
        weights += albumWeight;
    }
    score.sameVersion = row.title.version == file.title.version;
    score.sameNumbers = row.title.numbers == file.title.numbers;
    score.sameIsrc = !row.isrc.isEmpty() && row.isrc == file.isrc;
    score.total = std::clamp(sum / weights - (score.sameVersion ? 0 : otherVersionMalus), 0.0, 1.0);
    return score;
}

bool sameRecording(const Probe &a, const Probe &b) {
    const Score score = scoreOf(a, b);
    return score.sameVersion && score.sameNumbers && score.title >= sameRecordingTitle &&
           score.artist.value_or(1) >= sameRecordingArtist && score.lengthDelta.value_or(0) <= sameRecordingSec;
}

} // namespace zelk::engine

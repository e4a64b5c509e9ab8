#include "Matching/Scorer.h"

#include "Matching/Fold.h"

#include <algorithm>
#include <cmath>

namespace zelk::engine {

namespace {

constexpr double otherVersionMalus = 0.15;
constexpr double fullLengthSec = 4;
constexpr double noLengthSec = 20;

/// Lengths of copies of one recording differ by the encoders' padding, hardly more.
constexpr double sameRecordingSec = 4;
constexpr double sameRecordingArtist = 0.80;
constexpr double sameRecordingTitle = 0.90;
/// Where the titles aren't equal.
constexpr double sameLengthSec = 1;

/// The share of the main artist, the rest going to how the whole lists overlap: files often lack the featured ones.
constexpr double mainArtistShare = 0.8;
constexpr double sameArtist = 0.85;

/// Comparing takes the product of the lengths, and a tag may hold megabytes.
constexpr qsizetype longestText = 400;
constexpr qsizetype mostArtists = 24;

double bestOf(const Phrase &artist, const std::vector<Phrase> &among) {
    double best = 0;
    for (const Phrase &other : among) {
        best = std::max(best, wordSimilarity(artist, other));
    }
    return best;
}

double overlap(const std::vector<Phrase> &a, const std::vector<Phrase> &b) {
    std::size_t shared = 0;
    for (const Phrase &artist : a) {
        shared += bestOf(artist, b) >= sameArtist ? 1 : 0;
    }
    const std::size_t all = a.size() + b.size() - std::min(shared, b.size());
    return static_cast<double>(shared) / static_cast<double>(all);
}

double artistSimilarity(const Probe &a, const Probe &b) {
    const double whole = wordSimilarity(a.allArtists, b.allArtists);
    if (whole == 1) {
        return 1;
    }
    const double main =
        std::max(bestOf(a.eachArtist.front(), b.eachArtist), bestOf(b.eachArtist.front(), a.eachArtist));
    const double lists = mainArtistShare * main + (1 - mainArtistShare) * overlap(a.eachArtist, b.eachArtist);
    return std::clamp(std::max(lists, whole), 0.0, 1.0);
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
    probe.title = parseTitle(title.left(longestText));
    probe.artists = foldedArtists(artists.left(longestText));
    for (const QString &featured : std::as_const(probe.title.featured)) {
        if (!probe.artists.contains(featured)) {
            probe.artists += featured;
        }
    }
    probe.artists = probe.artists.mid(0, mostArtists);
    if (!album.trimmed().isEmpty()) {
        probe.album = parseTitle(album.left(longestText)).core;
    }
    if (std::isfinite(durationSec) && durationSec > 0) {
        probe.durationSec = durationSec;
    }
    probe.isrc = normalIsrc(isrc.left(longestText));
    probe.core = Phrase(probe.title.core);
    for (const QString &artist : std::as_const(probe.artists)) {
        probe.eachArtist.emplace_back(artist);
    }
    probe.allArtists = Phrase(probe.artists.join(u' '));
    probe.albumWords = Phrase(probe.album);
    return probe;
}

Score scoreOf(const Probe &row, const Probe &file) {
    Score score;
    score.title = wordSimilarity(row.core, file.core);
    double sum = titleWeight * score.title;
    double weights = titleWeight;
    if (!row.artists.isEmpty() && !file.artists.isEmpty()) {
        score.artist = artistSimilarity(row, file);
        sum += artistWeight * *score.artist;
        weights += artistWeight;
    }
    if (row.durationSec && file.durationSec) {
        score.lengthDelta = std::abs(*row.durationSec - *file.durationSec);
        const double closeness = (noLengthSec - *score.lengthDelta) / (noLengthSec - fullLengthSec);
        score.length = std::clamp(closeness, 0.0, 1.0);
        sum += lengthWeight * score.length;
        weights += lengthWeight;
    }
    if (!row.album.isEmpty() && !file.album.isEmpty()) {
        score.album = wordSimilarity(row.albumWords, file.albumWords);
        sum += albumWeight * score.album;
        weights += albumWeight;
    }
    score.sameVersion = row.title.version == file.title.version;
    score.sameBareVersion = row.title.bareVersion == file.title.bareVersion;
    score.sameNumbers = row.title.numbers == file.title.numbers;
    score.sameIsrc = !row.isrc.isEmpty() && row.isrc == file.isrc;
    score.total = std::clamp(sum / weights - (score.sameVersion ? 0 : otherVersionMalus), 0.0, 1.0);
    return score;
}

bool sameRecording(const Probe &a, const Probe &b) {
    const Score score = scoreOf(a, b);
    if (score.lengthDelta.value_or(0) > sameRecordingSec) {
        return false;
    }
    if (score.sameIsrc) {
        return true;
    }
    const bool sameTitle = score.title == 1 || (score.title >= sameRecordingTitle &&
                                                score.lengthDelta.value_or(noLengthSec) <= sameLengthSec);
    return score.sameVersion && score.sameBareVersion && score.sameNumbers && sameTitle &&
           score.artist.value_or(1) >= sameRecordingArtist;
}

} // namespace zelk::engine

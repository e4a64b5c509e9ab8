#include "Matching/MatchIndex.h"

#include "Matching/Fold.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace zelk::engine {

namespace {

/// A word that so many files have says little, and its list is long: it is followed only if no rarer one finds enough.
constexpr std::size_t commonWord = 5'000;

bool writesWithoutSpaces(QChar c) {
    switch (c.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
        return true;
    default:
        return false;
    }
}

/// The words a probe is found by. Where a script has no spaces, each pair of neighbours counts as a word too, so that
/// one differing character doesn't hide the title.
QSet<QString> keysOf(const Probe &probe) {
    QSet<QString> keys;
    const auto add = [&keys](const QString &text) {
        for (const QString &word : text.split(u' ', Qt::SkipEmptyParts)) {
            keys.insert(word);
            for (qsizetype i = 0; i + 1 < word.size() && word.size() > 2; ++i) {
                if (writesWithoutSpaces(word[i]) && writesWithoutSpaces(word[i + 1])) {
                    keys.insert(word.mid(i, 2));
                }
            }
        }
    };
    add(probe.title.core);
    for (const QString &artist : probe.artists) {
        add(artist);
    }
    return keys;
}

} // namespace

MatchIndex::MatchIndex(std::vector<AudioFile> files) : _files(std::move(files)) {
    _probes.reserve(_files.size());
    for (int i = 0; i < size(); ++i) {
        const AudioFile &file = _files[static_cast<std::size_t>(i)];
        _probes.push_back(makeProbe(file.title, file.artist, file.album, file.durationSec, file.isrc));
        const Probe &probe = _probes.back();
        for (const QString &key : keysOf(probe)) {
            _byWord[key].push_back(i);
        }
        if (!probe.isrc.isEmpty()) {
            _byIsrc[probe.isrc].push_back(i);
        }
        _positions.insert(file.path, i);
    }
}

std::vector<int> MatchIndex::candidates(const Probe &row) const {
    struct Found {
        int position;
        double weight;
        double lengthDelta;
    };
    QHash<int, double> weights;
    std::vector<const std::vector<int> *> lists;
    for (const QString &key : keysOf(row)) {
        const auto list = _byWord.constFind(key);
        if (list != _byWord.constEnd()) {
            lists.push_back(&*list);
        }
    }
    std::sort(lists.begin(), lists.end(), [](const auto *a, const auto *b) { return a->size() < b->size(); });
    for (const std::vector<int> *list : lists) {
        if (list->size() > commonWord && weights.size() >= maxCandidates) {
            break;
        }
        const double rarity = std::log(1.0 + static_cast<double>(size()) / static_cast<double>(list->size()));
        for (const int position : *list) {
            weights[position] += rarity;
        }
    }
    for (const int position : row.isrc.isEmpty() ? std::vector<int>() : _byIsrc.value(row.isrc)) {
        weights[position] += 1'000;
    }
    std::vector<Found> found;
    found.reserve(static_cast<std::size_t>(weights.size()));
    for (auto it = weights.cbegin(); it != weights.cend(); ++it) {
        const auto &duration = probe(it.key()).durationSec;
        const double delta = row.durationSec && duration ? std::abs(*row.durationSec - *duration) : 0;
        found.push_back({it.key(), it.value(), delta});
    }
    const auto likelier = [](const Found &a, const Found &b) {
        if (std::abs(a.weight - b.weight) > 1e-9) {
            return a.weight > b.weight;
        }
        return a.lengthDelta != b.lengthDelta ? a.lengthDelta < b.lengthDelta : a.position < b.position;
    };
    const auto kept = std::min<std::size_t>(found.size(), maxCandidates);
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(kept), found.end(), likelier);
    std::vector<int> positions;
    for (std::size_t i = 0; i < kept; ++i) {
        positions.push_back(found[i].position);
    }
    return positions;
}

} // namespace zelk::engine

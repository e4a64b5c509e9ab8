#include "Matching/MatchIndex.h"

#include "Matching/Fold.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zelk::engine {

namespace {

/// So many entries of the words' lists are gone through for one row, the rarest words first. The longer lists are only
/// asked about the files that these have brought, so that "the" costs no more in a large collection than in a small
/// one.
constexpr std::size_t mostFollowed = 4'000;
constexpr double isrcWeight = 1'000;

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
    keys.insert(u'=' + probe.title.core); // finds the title that is made of nothing but common words
    for (const QString &artist : probe.artists) {
        add(artist);
    }
    return keys;
}

} // namespace

MatchIndex::MatchIndex(std::vector<AudioFile> files) : _files(std::move(files)) {
    _probes.reserve(_files.size());
    _lengths.reserve(_files.size());
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
        _lengths.push_back(probe.durationSec.value_or(0));
    }
}

/// The files that share a word with the row; their weights are left in `weights`, which is as long as the index and was
/// all zero.
std::vector<int> MatchIndex::sharingWords(const Probe &row, std::vector<double> &weights) const {
    std::vector<const std::vector<int> *> lists;
    for (const QString &key : keysOf(row)) {
        if (const auto list = _byWord.constFind(key); list != _byWord.constEnd()) {
            lists.push_back(&*list);
        }
    }
    std::sort(lists.begin(), lists.end(), [](const auto *a, const auto *b) { return a->size() < b->size(); });
    std::vector<int> met;
    const auto weigh = [&](int position, double weight) {
        double &sum = weights[static_cast<std::size_t>(position)];
        if (sum == 0) {
            met.push_back(position);
        }
        sum += weight;
    };
    std::size_t followed = 0;
    for (const std::vector<int> *list : lists) {
        const double rarity = std::log(1.0 + static_cast<double>(size()) / static_cast<double>(list->size()));
        if (met.empty() || followed + list->size() <= mostFollowed) {
            followed += list->size();
            for (const int position : *list) {
                weigh(position, rarity);
            }
            continue;
        }
        for (const int position : met) {
            if (std::binary_search(list->begin(), list->end(), position)) {
                weights[static_cast<std::size_t>(position)] += rarity;
            }
        }
    }
    if (!row.isrc.isEmpty()) {
        for (const int position : _byIsrc.value(row.isrc)) {
            weigh(position, isrcWeight);
        }
    }
    return met;
}

std::vector<int> MatchIndex::candidates(const Probe &row, const std::function<bool(const AudioFile &)> &wanted) const {
    struct Found {
        int position;
        double weight;
        double lengthDelta;
    };
    static thread_local std::vector<double> weights; // all zero between two calls
    weights.resize(std::max(weights.size(), _files.size()));
    std::vector<Found> found;
    for (const int position : sharingWords(row, weights)) {
        const double weight = std::exchange(weights[static_cast<std::size_t>(position)], 0);
        const double length = _lengths[static_cast<std::size_t>(position)];
        found.push_back({position, weight, row.durationSec && length > 0 ? std::abs(*row.durationSec - length) : 0});
    }
    const auto lessLikely = [](const Found &a, const Found &b) {
        if (std::abs(a.weight - b.weight) > 1e-9) {
            return a.weight < b.weight;
        }
        return a.lengthDelta != b.lengthDelta ? a.lengthDelta > b.lengthDelta : a.position > b.position;
    };
    std::make_heap(found.begin(), found.end(), lessLikely);
    std::vector<int> positions;
    for (auto end = found.end(); end != found.begin() && positions.size() < maxCandidates; --end) {
        std::pop_heap(found.begin(), end, lessLikely);
        if (const int position = std::prev(end)->position; wanted(file(position))) {
            positions.push_back(position);
        }
    }
    return positions;
}

} // namespace zelk::engine

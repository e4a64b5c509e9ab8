#pragma once

#include "Library/AudioFile.h"
#include "Matching/Scorer.h"

#include <QHash>

#include <functional>
#include <vector>

namespace zelk::engine {

/// Finds, among all files of the collection, the few that a row may mean, without looking at each file. Made once from
/// a list of files and never changed, so any thread may ask.
class MatchIndex {
public:
    /// No row is ever compared with more files than this.
    static constexpr int maxCandidates = 200;

    explicit MatchIndex(std::vector<AudioFile> files);

    const AudioFile &file(int position) const { return _files[static_cast<std::size_t>(position)]; }
    const Probe &probe(int position) const { return _probes[static_cast<std::size_t>(position)]; }
    int size() const { return static_cast<int>(_files.size()); }

    /// Positions of at most maxCandidates of the wanted files, the likeliest first: those with the row's ISRC, then
    /// those that share most and rarest words of title and artist, the closer in length first where they share the
    /// same.
    std::vector<int> candidates(const Probe &row, const std::function<bool(const AudioFile &)> &wanted) const;

    /// The file at this absolute path, or -1.
    int positionOf(const QString &path) const { return _positions.value(path, -1); }

private:
    std::vector<int> sharingWords(const Probe &row, std::vector<double> &weights) const;

    std::vector<AudioFile> _files;
    std::vector<Probe> _probes;
    std::vector<double>
        _lengths; // of the probes, 0 if unknown: close together, since thousands are looked at for a row
    QHash<QString, std::vector<int>> _byWord;
    QHash<QString, std::vector<int>> _byIsrc;
    QHash<QString, int> _positions;
};

} // namespace zelk::engine

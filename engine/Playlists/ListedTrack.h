#pragma once

#include <QString>

#include <vector>

namespace zelk::engine {

/// One row of a playlist, as its file tells it.
struct ListedTrack {
    QString title;
    QString artist; ///< As shown: several joined by ", ". Empty if the file names none.
    QString album;
    double durationSec = 0; ///< 0 if the file doesn't say.
    QString isrc;
    QString artworkUrl;
    QString persistentId; ///< Of the Music app's library; empty elsewhere.
    QString rowKey;       ///< See rowKeyOf(); empty until the catalogue fills it in.
    QString location;     ///< Absolute path of the audio file that the list itself names; empty if it names none.

    bool operator==(const ListedTrack &) const = default;
};

/// Something that a reader passed over.
struct ListWarning {
    qint64 line = 0; ///< From 1; 0 for the file as a whole.
    QString message; ///< A phrase that reads well behind "file, line n: ".

    bool operator==(const ListWarning &) const = default;
};

/// One list found in a file.
struct ReadList {
    QString name; ///< Empty: named after the file.
    std::vector<ListedTrack> tracks;

    bool operator==(const ReadList &) const = default;
};

/// All that one playlist file holds.
struct ReadFile {
    std::vector<ReadList> lists;
    std::vector<ListWarning> warnings;
};

} // namespace zelk::engine

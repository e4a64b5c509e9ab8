#pragma once

#include "Transport/HelperProtocolCatalogue.h"

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
    QString rowKey;       ///< See rowKeyOf(); the catalogue fills it in where the reader hasn't.
    QString location;     ///< Absolute path of the audio file that the list itself names; empty if it names none.

    bool operator==(const ListedTrack &) const = default;
};

/// Something that a reader passed over.
struct ListWarning {
    qint64 line = 0; ///< From 1; 0 for the file as a whole.
    QString message; ///< A phrase that reads well behind "file, line n: ".

    bool operator==(const ListWarning &) const = default;
};

/// One list found in a file, or a folder of lists that the file itself tells.
struct ReadList {
    QString name; ///< Empty: named after the file.
    std::vector<ListedTrack> tracks;
    ArtworkRef artwork;
    /// What tells it from the other lists of its file, where a name doesn't. Empty: its name.
    QString key = {};
    QString parentKey = {}; ///< The key of the file's own folder that it lies in; empty if in none.
    bool isFolder = false;

    bool operator==(const ReadList &) const = default;
};

/// All that one playlist file holds.
struct ReadFile {
    std::vector<ReadList> lists;
    std::vector<ListWarning> warnings; ///< The first few; the last is why it isn't whole, if it isn't.
    qint64 moreWarnings = 0;           ///< How many there were besides.
    /// False if the file may hold more than is told here: it broke off, or it is too much.
    bool whole = true;

    /// A file of nothing but mistakes must not become as many lines in the log.
    void warn(qint64 line, const QString &message) {
        constexpr std::size_t mostWarnings = 20;
        if (warnings.size() < mostWarnings) {
            warnings.push_back({line, message});
        } else {
            ++moreWarnings;
        }
    }

    /// Says why what follows isn't told. However many warnings there are, this one isn't left out.
    void breakOff(qint64 line, const QString &message) {
        warnings.push_back({line, message});
        whole = false;
    }
};

} // namespace zelk::engine

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <stdexcept>
#include <vector>

namespace zelk {

/// Why the Music app's library can't be read, in a sentence.
class MusicLibraryError : public std::runtime_error {
public:
    explicit MusicLibraryError(const QString &description) : std::runtime_error(description.toStdString()) {}
};

/// The Music app's library on this machine, as it was when it was opened. Used on one thread, which it may hold up.
class MusicLibrary {
public:
    struct MediaItem {
        quint64 persistentID = 0;
        QString file; ///< absolute path; empty for what is not a file of this machine
    };

    virtual ~MusicLibrary() = default;

    /// In the library's own order. Two may have one ID.
    virtual const std::vector<MediaItem> &allMediaItems() const = 0;
    /// The item's cover in the encoding that it was given with; empty when it has none.
    virtual QByteArray artworkData(const MediaItem &item) const = 0;

    /// Reads the library that the Music app has exported to that file. Throws `MusicLibraryError`.
    static std::unique_ptr<MusicLibrary> open(const QString &file);
    /// Where the export is expected: "Library.xml" in the user's music folder.
    static QString defaultFile();
};

} // namespace zelk

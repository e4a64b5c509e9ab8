#pragma once

#include "Platform/MusicLibrary.h"
#include "Support/Logger.h"

#include <QHash>

#include <functional>
#include <memory>

namespace zelk {

/// The user's music library as the place of covers: opened at the first need and once, indexed once.
class ArtworkLibrary {
public:
    /// Throws `MusicLibraryError`.
    using Opener = std::function<std::unique_ptr<MusicLibrary>()>;

    ArtworkLibrary(Opener open, Logger logger);

    /// False once opening has failed, which is not tried again.
    bool iTunesLibraryAvailable() const { return _iTunesLibraryAvailable; }

    /// The cover of the item with that ID, hexadecimal or else decimal. Empty without an item or a cover.
    QByteArray artworkData(const QString &persistentID);

private:
    enum class State { notTried, failed, present };

    MusicLibrary *ensureLibrary();
    void ensureIndex();
    const MusicLibrary::MediaItem *mediaItem(const QString &persistentID) const;

    const Opener _open;
    const Logger _logger;
    State _state = State::notTried;
    std::unique_ptr<MusicLibrary> _library;
    QHash<quint64, const MusicLibrary::MediaItem *> _itemsByPersistentID;
    bool _indexedLibrary = false;
    bool _iTunesLibraryAvailable = true;
};

} // namespace zelk

#pragma once

#include "Library/AudioReader.h"
#include "Playlists/Playlist.h"
#include "Threads/WorkQueue.h"

#include <chrono>
#include <functional>
#include <future>
#include <mutex>

namespace zelk::engine {

/// Where playlists are looked for.
struct PlaylistPlaces {
    QStringList folders; ///< Absolute.
};

/// Knows the exported playlists. Each refresh looks at all folders and reads the files that have changed. Any thread
/// may call; those who ask while a scan is under way share it.
class PlaylistCatalogue {
public:
    using Warn = std::function<void(const QString &message)>;

    /// `places` is asked at the beginning of each scan, `scanned` is told of each new snapshot; both on the scan's
    /// thread.
    PlaylistCatalogue(std::function<PlaylistPlaces()> places, Warn warn,
                      std::function<void(const PlaylistSnapshot &)> scanned);

    /// Scans, for as long as `patience`; then returns what is known, which is never null, and says in a warning that it
    /// may be old.
    std::shared_ptr<const PlaylistSnapshot> refresh(std::chrono::milliseconds patience);

    /// What the last scan found; scans if there was none.
    std::shared_ptr<const PlaylistSnapshot> known(std::chrono::milliseconds patience);

private:
    using Snapshot = std::shared_ptr<const PlaylistSnapshot>;
    struct Cached {
        FileStamp stamp;
        std::shared_ptr<const ReadFile> content;
    };

    Snapshot scan();
    void enterFile(PlaylistSnapshot &snapshot, const QString &root, const QString &path);
    QString enterFolders(PlaylistSnapshot &snapshot, PlaylistSourceId source, const QString &root,
                         const QString &folder);
    std::shared_ptr<const ReadFile> read(PlaylistSnapshot &snapshot, const QString &path);
    void warnOnce(const QString &path, const QString &why);

    const std::function<PlaylistPlaces()> _places;
    const Warn _warn;
    const std::function<void(const PlaylistSnapshot &)> _scanned;

    std::mutex _mutex; // guards the two below
    Snapshot _known;
    std::shared_future<Snapshot> _underWay;

    QHash<QString, Cached> _cache; // the scan's thread alone, as the next
    QHash<QString, QString> _told;
    WorkQueue _queue; // last, so that its thread ends before what it uses
};

} // namespace zelk::engine

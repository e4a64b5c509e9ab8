#pragma once

#include "Playlists/FolderWatch.h"
#include "Playlists/Playlist.h"
#include "Playlists/PlaylistFiles.h"
#include "Threads/WorkQueue.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelk::engine {

class SnapshotBuilder;

/// Where playlists are looked for. All paths are absolute.
struct PlaylistPlaces {
    QStringList folders; ///< Looked through with all that is in them.
    QStringList files;   ///< Looked at as well, if they are there.
};

/// Knows the exported playlists. Each scan looks at all folders and reads the files that have changed; folders and
/// files are watched, and what changes in them is read soon after. Any thread may call; those who ask while a scan that
/// somebody asked for is under way share it, unless something has changed since it began.
class PlaylistCatalogue {
public:
    using Warn = std::function<void(const QString &message)>;

    /// `places` is asked at the beginning of each scan, `scanned` is told of each new snapshot; both on the scan's
    /// thread.
    PlaylistCatalogue(std::function<PlaylistPlaces()> places, Warn warn,
                      std::function<void(const PlaylistSnapshot &)> scanned);
    /// Stops the scan under way.
    ~PlaylistCatalogue();

    /// Scans, for as long as `patience`; then returns what is known, which is never null but says that it isn't
    /// complete, and warns, once a scan. The same without a warning when it is asked to stop.
    std::shared_ptr<const PlaylistSnapshot> refresh(std::chrono::milliseconds patience, std::stop_token stop = {});

    /// What the last scan found; scans if there was none.
    std::shared_ptr<const PlaylistSnapshot> known(std::chrono::milliseconds patience);

    /// Begins a scan that nobody waits for.
    void lookAhead();

private:
    using Snapshot = std::shared_ptr<const PlaylistSnapshot>;
    struct Scan {
        bool isAskedFor = false;
        bool isToldLate = false;
        Snapshot result; // once it is done
    };

    std::shared_ptr<Scan> nextScan(); // with the lock held
    void carryOut();
    void lookThrough(PlaylistSnapshot &snapshot);
    void enter(PlaylistSnapshot &snapshot, SnapshotBuilder &builder, const QString &root, const QString &path);
    Snapshot knownSoFar();

    const std::function<PlaylistPlaces()> _places;
    const Warn _warn;
    const std::function<void(const PlaylistSnapshot &)> _scanned;
    std::stop_source _stop;
    PlaylistFiles _files; // the scan's thread alone

    std::mutex _mutex; // guards all down to _changed, and each scan
    std::condition_variable_any _done;
    Snapshot _known;
    std::shared_ptr<PlaylistSnapshot> _growing; // of the scan under way, which changes it under the lock
    std::shared_ptr<Scan> _underWay;
    std::shared_ptr<Scan> _next;
    QStringList _changed; // since the scan under way, or the last one, began

    FolderWatch _watch;
    WorkQueue _queue; // last, so that its thread ends before what it uses
};

} // namespace zelk::engine

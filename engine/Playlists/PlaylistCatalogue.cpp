#include "Playlists/PlaylistCatalogue.h"

#include "Library/FolderWalk.h"
#include "Playlists/SnapshotBuilder.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

PlaylistCatalogue::PlaylistCatalogue(std::function<PlaylistPlaces()> places, Warn warn,
                                     std::function<void(const PlaylistSnapshot &)> scanned)
    : _places(std::move(places)), _warn(std::move(warn)), _scanned(std::move(scanned)), _files(_warn),
      _watch(
          [this](const QString &path) {
              const std::lock_guard lock(_mutex);
              _changed += path;
          },
          [this] { lookAhead(); }) {}

PlaylistCatalogue::~PlaylistCatalogue() {
    _stop.request_stop();
}

std::shared_ptr<PlaylistCatalogue::Scan> PlaylistCatalogue::nextScan() {
    if (!_next) {
        _next = std::make_shared<Scan>();
        _queue.post([this] { carryOut(); });
    }
    return _next;
}

void PlaylistCatalogue::lookAhead() {
    const std::lock_guard lock(_mutex);
    nextScan();
}

std::shared_ptr<const PlaylistSnapshot> PlaylistCatalogue::refresh(std::chrono::milliseconds patience,
                                                                   std::stop_token stop) {
    const auto until = std::chrono::steady_clock::now() + patience;
    bool isFirstToTell = false;
    {
        std::unique_lock lock(_mutex);
        // One that began by itself may already have passed what the asker has just put there.
        const bool isShared = _underWay && _underWay->isAskedFor && _changed.isEmpty();
        const std::shared_ptr<Scan> scan = isShared ? _underWay : nextScan();
        scan->isAskedFor = true;
        if (_done.wait_until(lock, stop, until, [&] { return scan->result != nullptr; })) {
            return scan->result;
        }
        isFirstToTell = !stop.stop_requested() && !std::exchange(scan->isToldLate, true);
    }
    if (isFirstToTell) {
        _warn(u"Looking through the playlists takes long; those found so far are shown until it is done."_s);
    }
    return knownSoFar();
}

std::shared_ptr<const PlaylistSnapshot> PlaylistCatalogue::known(std::chrono::milliseconds patience) {
    {
        const std::lock_guard lock(_mutex);
        if (_known) {
            return _known;
        }
    }
    return refresh(patience);
}

PlaylistCatalogue::Snapshot PlaylistCatalogue::knownSoFar() {
    auto snapshot = std::make_shared<PlaylistSnapshot>();
    {
        const std::lock_guard lock(_mutex);
        if (_known) {
            *snapshot = *_known;
        } else if (_growing) {
            *snapshot = *_growing;
        }
    }
    snapshot->isComplete = false;
    putInOrder(*snapshot);
    return snapshot;
}

void PlaylistCatalogue::carryOut() {
    std::shared_ptr<Scan> scan;
    const auto snapshot = std::make_shared<PlaylistSnapshot>();
    QStringList changed;
    {
        const std::lock_guard lock(_mutex);
        scan = _underWay = std::exchange(_next, nullptr);
        _growing = snapshot;
        changed = std::exchange(_changed, {});
    }
    for (const QString &path : std::as_const(changed)) {
        _files.distrust(path);
    }
    Snapshot result = snapshot;
    try {
        lookThrough(*snapshot);
    } catch (const std::exception &error) {
        _warn(u"The playlists couldn't be looked through: %1"_s.arg(QString::fromUtf8(error.what())));
        result = knownSoFar();
    }
    if (_stop.stop_requested()) {
        result = knownSoFar();
    }
    if (result->isComplete) {
        _scanned(*result);
    }
    {
        const std::lock_guard lock(_mutex);
        if (result->isComplete) {
            _known = result;
        }
        _growing.reset();
        _underWay.reset();
        scan->result = std::move(result);
    }
    _done.notify_all();
}

void PlaylistCatalogue::lookThrough(PlaylistSnapshot &snapshot) {
    const PlaylistPlaces places = _places();
    std::vector<std::pair<QString, QString>> found; // root and path
    QStringList watched;
    const auto note = [&](const QString &path, const QString &why) {
        snapshot.unreadable += path;
        snapshot.problems += path + ": "_L1 + why;
        _files.warnOnce(path, why);
    };
    for (const QString &root : places.folders) {
        if (!QFileInfo(root).isDir()) {
            snapshot.unreadable += root;
        }
        FolderVisitor visitor;
        visitor.file = [&](const QString &path) {
            if (playlistSourceOf(path)) {
                found.emplace_back(root, path);
            }
        };
        visitor.folder = [&](const QString &path) { watched += path; };
        visitor.problem = note;
        walkFolder(root, visitor, _stop.get_token());
    }
    for (const QString &path : places.files) {
        const QFileInfo info(path);
        if (info.isFile()) {
            found.emplace_back(info.path(), path);
        } else if (info.isSymLink()) {
            note(path, u"the link leads nowhere"_s);
        }
    }
    QSet<QString> paths;
    for (const auto &[root, path] : found) {
        watched += path;
        paths.insert(path);
    }
    _watch.watch(watched); // before they are read, so that no change goes unnoticed
    _files.keepOnly(paths);
    SnapshotBuilder builder(snapshot);
    for (const auto &[root, path] : found) {
        if (_stop.stop_requested()) {
            return;
        }
        enter(snapshot, builder, root, path);
    }
    const std::lock_guard lock(_mutex);
    putInOrder(snapshot);
}

void PlaylistCatalogue::enter(PlaylistSnapshot &snapshot, SnapshotBuilder &builder, const QString &root,
                              const QString &path) {
    const PlaylistFiles::Reading reading = _files.read(path, _stop.get_token());
    const std::lock_guard lock(_mutex);
    if (reading.isPartial) {
        snapshot.unreadable += path;
    }
    if (!reading.problem.isEmpty()) {
        snapshot.problems += path + ": "_L1 + reading.problem;
    }
    if (reading.content) {
        builder.enter(*playlistSourceOf(path), root, path, reading.content);
    }
}

} // namespace zelk::engine

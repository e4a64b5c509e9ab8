#include "Playlists/FolderWatch.h"

#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <future>

namespace zelk::engine {

namespace {

/// An exporter writes a file in several strokes; each would be a scan.
constexpr std::chrono::milliseconds quietTime{400};

/// The system has a limit for all programs of the user together.
constexpr qsizetype mostPaths = 4'000;

QStringList inFirstOnly(const QStringList &first, const QStringList &second) {
    const QSet<QString> others(second.begin(), second.end());
    QStringList only;
    for (const QString &path : first) {
        if (!others.contains(path)) {
            only += path;
        }
    }
    return only;
}

} // namespace

class FolderWatch::Watcher {
public:
    Watcher(std::function<void(const QString &)> changed, std::function<void()> settled)
        : _changed(std::move(changed)), _settled(std::move(settled)) {
        _quiet.setSingleShot(true);
        _quiet.setInterval(quietTime);
        const auto note = [this](const QString &path) {
            _changed(path);
            _quiet.start();
        };
        QObject::connect(&_watcher, &QFileSystemWatcher::fileChanged, &_quiet, note);
        QObject::connect(&_watcher, &QFileSystemWatcher::directoryChanged, &_quiet, note);
        QObject::connect(&_quiet, &QTimer::timeout, &_quiet, [this] { _settled(); });
    }

    void watch(const QStringList &paths) {
        const QStringList now = _watcher.files() + _watcher.directories();
        if (const QStringList gone = inFirstOnly(now, paths); !gone.isEmpty()) {
            _watcher.removePaths(gone);
        }
        if (const QStringList fresh = inFirstOnly(paths, now); !fresh.isEmpty()) {
            _watcher.addPaths(fresh);
        }
    }

private:
    const std::function<void(const QString &)> _changed;
    const std::function<void()> _settled;
    QFileSystemWatcher _watcher;
    QTimer _quiet;
};

FolderWatch::FolderWatch(std::function<void(const QString &)> changed, std::function<void()> settled)
    : _thread(SerialExecutor::make(QStringLiteral("orrim.zelk.engine.watch"))),
      _watcher(std::make_shared<std::unique_ptr<Watcher>>()) {
    _thread->post([watcher = _watcher, changed = std::move(changed), settled = std::move(settled)] {
        *watcher = std::make_unique<Watcher>(changed, settled);
    });
}

template<class Job>
void FolderWatch::runThere(Job job) {
    const auto done = std::make_shared<std::promise<void>>();
    const std::future<void> end = done->get_future();
    _thread->post([done, job = std::move(job)] {
        job();
        done->set_value();
    });
    end.wait(); // also over when the thread has ended and the job is dropped
}

FolderWatch::~FolderWatch() {
    runThere([watcher = _watcher] { watcher->reset(); });
}

void FolderWatch::watch(QStringList paths) {
    paths.resize(std::min(paths.size(), mostPaths));
    runThere([watcher = _watcher, paths = std::move(paths)] { (*watcher)->watch(paths); });
}

} // namespace zelk::engine

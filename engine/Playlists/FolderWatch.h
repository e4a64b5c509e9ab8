#pragma once

#include "Support/SerialExecutor.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace zelk::engine {

/// Watches files and folders on a thread of its own. What it can't watch (a disk of the network, more than the system
/// allows) merely goes unnoticed.
class FolderWatch {
public:
    /// `changed` is called at once for each path that changes, `settled` when nothing has changed for a while; both on
    /// the watch's thread.
    FolderWatch(std::function<void(const QString &path)> changed, std::function<void()> settled);
    /// Afterwards neither is called.
    ~FolderWatch();

    /// Watches these paths, and none else, from its return on. Any thread may call but the watch's own.
    void watch(QStringList paths);

private:
    class Watcher;

    template<class Job>
    void runThere(Job job);

    SerialExecutor::Ref _thread;
    std::shared_ptr<std::unique_ptr<Watcher>> _watcher; // what it holds is touched on the thread alone
};

} // namespace zelk::engine

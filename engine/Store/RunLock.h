#pragma once

#include <QString>

#include <memory>
#include <mutex>

namespace zelk::engine {

/// Lets one process at a time write music and remember it. Held for as long as a run or a decision takes, any number of
/// times within one process. The system lets go of it when its process ends, however that comes about, so a file that
/// stays behind stands in nobody's way. Any thread may call.
class RunLock {
public:
    using Hold = std::shared_ptr<void>;

    explicit RunLock(QString path) : _path(std::move(path)) {}

    /// Null if another process has it. Where no such file can be made there is nothing to protect either.
    Hold take();
    /// The process that has it, for a message; 0 if that can't be told.
    qint64 holder() const;

private:
    class Share;

    void release();

    const QString _path;
    std::mutex _mutex; // guards all below
    int _shares = 0;
    int _descriptor = -1;
};

} // namespace zelk::engine

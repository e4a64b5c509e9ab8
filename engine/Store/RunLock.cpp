#include "Store/RunLock.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace zelk::engine {

class RunLock::Share {
public:
    explicit Share(RunLock &lock) : _lock(lock) {}
    ~Share() { _lock.release(); }
    Share(const Share &) = delete;
    Share &operator=(const Share &) = delete;

private:
    RunLock &_lock;
};

namespace {

constexpr std::chrono::milliseconds pauseBetween{20};
constexpr std::chrono::milliseconds patience{3'000};

/// False if another process has it.
bool lockWhole(int descriptor) {
    // Of the open file, not of the process: closing another descriptor of the file doesn't end it.
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return ::fcntl(descriptor, F_OFD_SETLK, &whole) == 0 || (errno != EAGAIN && errno != EACCES);
}

bool isAlive(qint64 process) {
    return process > 0 && (::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

} // namespace

RunLock::Hold RunLock::take() {
    const std::lock_guard lock(_mutex);
    if (_shares == 0) {
        _descriptor = ::open(QFile::encodeName(_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        bool held = _descriptor < 0 || lockWhole(_descriptor);
        // An engine that was killed while it started a program has left it to a child that is about to become that.
        for (auto left = patience; !held && left.count() > 0 && !isAlive(holder()); left -= pauseBetween) {
            std::this_thread::sleep_for(pauseBetween);
            held = lockWhole(_descriptor);
        }
        if (!held) {
            ::close(_descriptor);
            _descriptor = -1;
            return nullptr;
        }
        if (_descriptor >= 0 && ::ftruncate(_descriptor, 0) == 0) {
            const QByteArray process = QByteArray::number(static_cast<qint64>(::getpid()));
            [[maybe_unused]] const auto count =
                ::pwrite(_descriptor, process.constData(), static_cast<size_t>(process.size()), 0);
        }
    }
    ++_shares;
    return std::make_shared<Share>(*this);
}

void RunLock::release() {
    const std::lock_guard lock(_mutex);
    if (--_shares == 0 && _descriptor >= 0) {
        ::close(_descriptor);
        _descriptor = -1;
    }
}

qint64 RunLock::holder() const {
    try {
        return readWholeFile(_path).value_or(QByteArray()).toLongLong();
    } catch (const FileProblem &) {
        return 0;
    }
}

} // namespace zelk::engine

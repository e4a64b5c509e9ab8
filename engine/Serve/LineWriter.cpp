#include "Serve/LineWriter.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace zelk::engine {

namespace {

/// So much may wait for the reader before a run pauses.
constexpr qsizetype room = 8'000'000;

} // namespace

LineWriter::LineWriter(int descriptor, std::function<void()> closed)
    : _descriptor(descriptor), _closed(std::move(closed)), _thread([this] { loop(); }) {}

LineWriter::~LineWriter() {
    {
        const std::lock_guard lock(_mutex);
        _stopping = true;
    }
    _changed.notify_all();
    _wake.wake();
    _thread.join();
}

void LineWriter::writeLine(QByteArray line) {
    {
        const std::lock_guard lock(_mutex);
        if (_gone) {
            return;
        }
        line += '\n';
        _pending += line;
    }
    _changed.notify_all();
}

void LineWriter::waitForRoom(std::stop_token stop) {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, stop, [this] { return _gone || _stopping || _pending.size() < room; });
}

void LineWriter::drain(std::chrono::milliseconds patience) {
    std::unique_lock lock(_mutex);
    _changed.wait_for(lock, patience, [this] { return _gone || (_pending.isEmpty() && !_writing); });
}

void LineWriter::loop() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _stopping || !_pending.isEmpty(); });
        if (_stopping) {
            return;
        }
        const QByteArray bytes = std::exchange(_pending, {});
        _writing = true;
        lock.unlock();
        _changed.notify_all();
        const bool written = writeAll(bytes);
        lock.lock();
        _writing = false;
        if (!written) {
            _gone = true;
            _pending.clear();
            const bool ours = _stopping;
            lock.unlock();
            _changed.notify_all();
            if (!ours) {
                _closed();
            }
            return;
        }
        _changed.notify_all();
    }
}

bool LineWriter::writeAll(const QByteArray &bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        pollfd waits[] = {{_descriptor, POLLOUT, 0}, {_wake.descriptor(), POLLIN, 0}};
        if (::poll(waits, 2, -1) < 0 && errno != EINTR) {
            return false;
        }
        if (waits[1].revents != 0) {
            return false;
        }
        if (waits[0].revents == 0) {
            continue;
        }
        // A pipe that is ready takes so much without blocking, so the wake-up is never missed.
        const auto count = std::min<qsizetype>(bytes.size() - done, PIPE_BUF);
        const ssize_t written = ::write(_descriptor, bytes.constData() + done, static_cast<size_t>(count));
        if (written < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        done += std::max<ssize_t>(written, 0);
    }
    return true;
}

} // namespace zelk::engine

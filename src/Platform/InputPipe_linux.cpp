#include "Platform/InputPipe.h"

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace zelk {

InputPipe::InputPipe(UniqueFd writeEnd)
    : _writeEnd(std::move(writeEnd)), _wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!_wake)
        throw std::system_error(errno, std::system_category(), "eventfd");
}

bool InputPipe::write(const QByteArray &data) {
    const char *next = data.constData();
    auto left = static_cast<size_t>(data.size());
    while (true) {
        // The waking descriptor is never read, so that once closed is closed for good.
        pollfd fds[] = {{.fd = _writeEnd.get(), .events = POLLOUT, .revents = 0},
                        {.fd = _wake.get(), .events = POLLIN, .revents = 0}};
        if (::poll(fds, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (fds[1].revents != 0)
            return false;
        if (left == 0)
            return (fds[0].revents & (POLLERR | POLLNVAL)) == 0;
        const auto written = ::write(_writeEnd.get(), next, left);
        if (written < 0) {
            if (errno == EAGAIN || errno == EINTR)
                continue;
            return false;
        }
        next += written;
        left -= static_cast<size_t>(written);
        if (left == 0)
            return true;
    }
}

void InputPipe::close() {
    const std::uint64_t one = 1;
    // It can only fail when the counter is full, and then it is set already.
    [[maybe_unused]] const auto written = ::write(_wake.get(), &one, sizeof one);
}

} // namespace zelk

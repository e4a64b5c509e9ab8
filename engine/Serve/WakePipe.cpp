#include "Serve/WakePipe.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace zelk::engine {

WakePipe::WakePipe() {
    if (::pipe2(_ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
}

WakePipe::~WakePipe() {
    ::close(_ends[0]);
    ::close(_ends[1]);
}

void WakePipe::wake() noexcept {
    const int saved = errno;
    [[maybe_unused]] const auto written = ::write(_ends[1], "", 1); // a full pipe is readable already
    errno = saved;
}

void WakePipe::rest() noexcept {
    char bytes[64];
    while (::read(_ends[0], bytes, sizeof bytes) > 0) {
    }
}

} // namespace zelk::engine

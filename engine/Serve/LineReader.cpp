#include "Serve/LineReader.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace zelk::engine {

void LineReader::run(const std::function<void(QByteArrayView)> &take) {
    NDJSONFramer framer;
    std::array<char, 1 << 16> chunk;
    for (;;) {
        pollfd waits[] = {{_descriptor, POLLIN, 0}, {_wake.descriptor(), POLLIN, 0}};
        if (::poll(waits, 2, -1) < 0 && errno != EINTR) {
            return;
        }
        if (waits[1].revents != 0) {
            return;
        }
        if (waits[0].revents == 0) {
            continue;
        }
        const ssize_t count = ::read(_descriptor, chunk.data(), chunk.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (count <= 0) {
            if (const auto last = framer.flush()) {
                take(*last);
            }
            return;
        }
        for (const QByteArray &line : framer.feed(QByteArrayView(chunk.data(), count))) {
            take(line);
        }
    }
}

} // namespace zelk::engine

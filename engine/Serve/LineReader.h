#pragma once

#include "Serve/WakePipe.h"
#include "Transport/NDJSONFramer.h"

#include <functional>

namespace zelk::engine {

/// Reads lines from a descriptor until its end, or until told to stop.
class LineReader {
public:
    explicit LineReader(int descriptor) : _descriptor(descriptor) {}

    /// Calls `take` with each line, on the calling thread. A last line without a line feed counts.
    void run(const std::function<void(QByteArrayView line)> &take);

    /// Ends run(). From any thread, and from a signal handler.
    void stop() noexcept { _wake.wake(); }

private:
    const int _descriptor;
    WakePipe _wake;
};

} // namespace zelk::engine

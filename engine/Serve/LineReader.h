#pragma once

#include "Transport/NDJSONFramer.h"

#include <functional>

namespace zelk::engine {

/// Reads lines from a descriptor until its end, or until told to stop.
class LineReader {
public:
    explicit LineReader(int descriptor);
    ~LineReader();
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;

    /// Calls `take` with each line, on the calling thread. A last line without a line feed counts.
    void run(const std::function<void(QByteArrayView line)> &take);

    /// Ends run(). From any thread, and from a signal handler.
    void stop() noexcept;

private:
    const int _descriptor;
    const int _wake;
};

} // namespace zelk::engine

#pragma once

#include "Platform/UniqueFd.h"

#include <QByteArray>

#include <memory>

namespace zelk {

/// The writing end of a child's standard input. `write` blocks its caller while the child doesn't read, for as long as
/// it takes, but never past `close`, which any thread may call: no release of ours waits for an engine that has
/// stopped.
class InputPipe {
public:
    /// Takes over a non-blocking descriptor. Throws std::system_error if no waking descriptor is to be had.
    explicit InputPipe(UniqueFd writeEnd);

    /// Writes all of `data` and returns true. False if the reader has gone, the pipe is closed or the write fails; part
    /// of `data` may have been written then.
    bool write(const QByteArray &data);

    /// Ends a `write` under way and fails every later one. The descriptor itself is closed with the object, when the
    /// last write has returned.
    void close();

private:
    UniqueFd _writeEnd;
    UniqueFd _wake;
};

} // namespace zelk

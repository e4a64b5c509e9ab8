#pragma once

#include "Transport/ServerEvent.h"

#include <stop_token>

namespace zelk::engine {

/// Where events go. Any thread may send; the order of one thread's events is kept, and no event is lost.
class EventSink {
public:
    virtual ~EventSink() = default;

    virtual void send(const ServerEvent &event) = 0;
    /// Waits while too much is waiting to be read by the other end, unless asked to stop: a run must not outrun a
    /// reader for ever.
    virtual void waitForRoom(std::stop_token) {}
};

} // namespace zelk::engine

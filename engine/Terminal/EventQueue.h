#pragma once

#include "Run/EventSink.h"
#include "Serve/WakePipe.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace zelk::engine {

/// Hands events to a loop that waits for descriptors.
class EventQueue : public EventSink {
public:
    void send(const ServerEvent &event) override;
    void waitForRoom(std::stop_token stop) override;

    /// Readable while there is something to take.
    int descriptor() const { return _wake.descriptor(); }
    /// All that has come since the last call.
    std::vector<ServerEvent> take();

private:
    WakePipe _wake;
    std::mutex _mutex; // guards all below
    std::condition_variable_any _changed;
    std::vector<ServerEvent> _events;
};

} // namespace zelk::engine

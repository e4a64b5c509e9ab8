#include "Terminal/EventQueue.h"

#include <utility>

namespace zelk::engine {

namespace {

/// So many events may wait for a slow terminal before a run pauses.
constexpr std::size_t room = 10'000;

} // namespace

void EventQueue::send(const ServerEvent &event) {
    const std::lock_guard lock(_mutex);
    _events.push_back(event);
    _wake.wake();
}

void EventQueue::waitForRoom(std::stop_token stop) {
    std::unique_lock lock(_mutex);
    _changed.wait(lock, stop, [this] { return _events.size() < room; });
}

std::vector<ServerEvent> EventQueue::take() {
    std::unique_lock lock(_mutex);
    _wake.rest();
    auto events = std::exchange(_events, {});
    lock.unlock();
    _changed.notify_all();
    return events;
}

} // namespace zelk::engine

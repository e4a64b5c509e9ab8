#include "Threads/WorkQueue.h"

namespace zelk::engine {

WorkQueue::WorkQueue(int threads) {
    for (int i = 0; i < threads; ++i) {
        _threads.emplace_back([this] { loop(); });
    }
}

WorkQueue::~WorkQueue() {
    {
        const std::lock_guard lock(_mutex);
        _stopping = true;
        _queue.clear();
    }
    _wake.notify_all();
    for (std::thread &thread : _threads) {
        thread.join();
    }
}

void WorkQueue::post(std::function<void()> work) {
    {
        const std::lock_guard lock(_mutex);
        _queue.push_back(std::move(work));
    }
    _wake.notify_one();
}

void WorkQueue::waitUntilIdle() {
    std::unique_lock lock(_mutex);
    _idle.wait(lock, [this] { return _queue.empty() && _busy == 0; });
}

void WorkQueue::loop() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _wake.wait(lock, [this] { return _stopping || !_queue.empty(); });
        if (_stopping) {
            return;
        }
        {
            const std::function<void()> work = std::move(_queue.front());
            _queue.pop_front();
            ++_busy;
            lock.unlock();
            work();
        } // what the work held is released outside of the lock
        lock.lock();
        --_busy;
        if (_busy == 0 && _queue.empty()) {
            _idle.notify_all();
        }
    }
}

} // namespace zelk::engine

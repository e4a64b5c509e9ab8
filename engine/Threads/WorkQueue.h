#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace zelk::engine {

/// Threads of its own that take pieces of work from one queue; with one thread they are done in the order they came.
/// Destroying it finishes what has begun, drops the rest and joins.
class WorkQueue {
public:
    explicit WorkQueue(int threads = 1);
    ~WorkQueue();
    WorkQueue(const WorkQueue &) = delete;
    WorkQueue &operator=(const WorkQueue &) = delete;

    /// Does the work some time later. It must not throw.
    void post(std::function<void()> work);

    /// Does the work and waits for its result; what it throws comes out here. Never from one of the queue's own
    /// threads.
    template<class Function>
    auto run(Function function) -> decltype(function()) {
        std::packaged_task<decltype(function())()> task(std::move(function));
        auto result = task.get_future();
        post([&task] { task(); });
        return result.get();
    }

    /// Waits until nothing is queued or under way.
    void waitUntilIdle();

private:
    void loop();

    std::mutex _mutex; // guards all below but the threads
    std::condition_variable _wake;
    std::condition_variable _idle;
    std::deque<std::function<void()>> _queue;
    int _busy = 0;
    bool _stopping = false;
    std::vector<std::thread> _threads;
};

} // namespace zelk::engine

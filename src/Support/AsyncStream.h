#pragma once

#include "Support/Cancelled.h"
#include "Support/SerialExecutor.h"

#include <QtGlobal>

#include <chrono>
#include <coroutine>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace zelk {

/// An unbounded stream with many writers and one reader, from any thread to any executor. This object is the writing
/// end: its release finishes the stream, and so does `finish`; what is pushed afterwards is dropped.
///
/// The reader takes what has gathered in one swap and hands it out element by element, in order. After 8 ms of that it
/// gives the event loop a turn, so that a burst never freezes the thread that reads it.
template<typename T>
class AsyncStream {
    struct State;

public:
    class Reader;

    AsyncStream() : _state(std::make_shared<State>()) {}
    ~AsyncStream() {
        if (_state)
            finish();
    }
    AsyncStream(AsyncStream &&) noexcept = default;
    AsyncStream &operator=(AsyncStream &&) = delete;

    void push(T element) const {
        const std::unique_lock lock(_state->mutex);
        if (_state->finished)
            return;
        auto &runs = _state->gathered;
        if (runs.empty() || runs.back().size() >= runLength)
            runs.emplace_back();
        runs.back().push_back(std::move(element));
        _state->wake();
    }

    /// Appends all of `elements` at once: one lock and at most one wake-up for the lot.
    void push(std::vector<T> &&elements) const {
        const std::unique_lock lock(_state->mutex);
        if (_state->finished || elements.empty())
            return;
        _state->gathered.push_back(std::move(elements));
        _state->wake();
    }

    void finish() const {
        const std::unique_lock lock(_state->mutex);
        _state->finished = true;
        _state->wake();
    }

    /// The reading end. It keeps no writer alive; all its copies are the one reader.
    Reader reader() const { return Reader(_state); }

private:
    static constexpr std::chrono::milliseconds turn{8};
    static constexpr std::size_t runLength = 256;

    struct Stopper {
        State *state;
        void operator()() const {
            const std::unique_lock lock(state->mutex);
            state->wake();
        }
    };

    struct State {
        std::mutex mutex; // guards the four below
        // Elements stand in runs, as they were pushed: a backlog of any length is added to, handed over and released
        // run by run, and nobody waits for the whole of it to move.
        std::vector<std::vector<T>> gathered;
        bool finished = false;
        std::coroutine_handle<> waiter;
        SerialExecutor::Ref waiterExecutor;

        // The reader's own, untouched by writers.
        std::vector<std::vector<T>> batch;
        std::size_t run = 0;
        std::size_t position = 0;
        bool isInTurn = false; // as the look before an element that is handed out at once has found
        std::chrono::steady_clock::time_point turnEnd;
        std::stop_token stop;
        std::optional<std::stop_callback<Stopper>> onStop;

        /// Called with the lock held.
        void wake() {
            if (!waiter)
                return;
            waiterExecutor->post([handle = std::exchange(waiter, nullptr)] { handle.resume(); });
            waiterExecutor.reset();
        }

        /// Whether there is an element to hand out without a look at what has gathered.
        bool hasNext() {
            while (run < batch.size()) {
                if (position < batch[run].size())
                    return true;
                std::vector<T>().swap(batch[run]);
                ++run;
                position = 0;
            }
            return false;
        }

        bool refill() {
            batch.clear();
            run = 0;
            position = 0;
            const std::unique_lock lock(mutex);
            batch.swap(gathered);
            return !batch.empty();
        }
    };

    /// What `next` awaits. It owns nothing and may be copied: g++ 12 copies awaiters, and destroys some twice.
    class Next {
    public:
        explicit Next(State *state) : _state(state) {}

        bool await_ready() const {
            if (_state->stop.stop_requested())
                return true;
            if (!_state->hasNext() && !_state->refill())
                return false;
            _state->isInTurn = std::chrono::steady_clock::now() < _state->turnEnd;
            return _state->isInTurn;
        }

        void await_suspend(std::coroutine_handle<> handle) const {
            {
                const std::unique_lock lock(_state->mutex);
                Q_ASSERT_X(!_state->waiter, "AsyncStream", "one reader only");
                _state->waiterExecutor = SerialExecutor::current();
                Q_ASSERT_X(_state->waiterExecutor, "AsyncStream", "awaited on a thread without an executor");
                _state->waiter = handle;
                const bool hasMore = _state->hasNext() || !_state->gathered.empty();
                if (hasMore || _state->finished) {
                    _state->wake();
                    return;
                }
            }
            // The coroutine is resumed by this thread's loop, so not before this function has returned.
            _state->onStop.emplace(_state->stop, Stopper{_state});
        }

        std::optional<T> await_resume() const {
            _state->onStop.reset();
            if (_state->stop.stop_requested())
                throw Cancelled();
            if (!std::exchange(_state->isInTurn, false))
                beginTurn();
            if (!_state->hasNext() && !_state->refill())
                return std::nullopt;
            return std::move(_state->batch[_state->run][_state->position++]);
        }

    private:
        void beginTurn() const {
            const auto now = std::chrono::steady_clock::now();
            if (now >= _state->turnEnd)
                _state->turnEnd = now + turn;
        }

        State *_state;
    };

public:
    class Reader {
    public:
        /// Awaits the next element; none at the end of the stream. Throws `Cancelled` once `stop` is requested.
        /// It must be awaited at once, on an executor's thread, and resumes there; the reader outlives the wait.
        Next next(std::stop_token stop = {}) const {
            _state->stop = std::move(stop);
            return Next(_state.get());
        }

        /// Everything that has gathered and was not handed out, without waiting. Only for the thread that reads.
        std::vector<T> takeGathered() const {
            std::vector<T> rest;
            do {
                while (_state->hasNext())
                    rest.push_back(std::move(_state->batch[_state->run][_state->position++]));
            } while (_state->refill());
            return rest;
        }

    private:
        friend class AsyncStream;
        explicit Reader(std::shared_ptr<State> state) : _state(std::move(state)) {}
        std::shared_ptr<State> _state;
    };

private:
    std::shared_ptr<State> _state;
};

} // namespace zelk

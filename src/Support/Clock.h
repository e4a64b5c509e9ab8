#pragma once

#include <QCoroTask>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace zelk {

/// Time as this program's deadlines mean it: it goes on while the machine sleeps, and never back. It is given in
/// everywhere, so that tests decide what time it is.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    /// Time since an origin that means nothing.
    using Time = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    virtual Time now() const = 0;

    /// Dropping it cancels what it stands for.
    class Alarm {
    public:
        virtual ~Alarm() = default;
    };

    /// Calls `ring` once, on the calling executor's thread, when `delay` has passed; a delay of nothing or less rings
    /// on the next turn of the loop. The alarm belongs to the calling thread and is dropped there.
    virtual std::unique_ptr<Alarm> after(Duration delay, std::function<void()> ring) = 0;

    /// Ends after `duration`, or early with `Cancelled`; either way on the thread that awaits it.
    QCoro::Task<> sleep(Duration duration, std::stop_token stop = {});
};

} // namespace zelk

#pragma once

#include "Support/Clock.h"

#include <memory>
#include <optional>

namespace zelk {

/// A clock that stands still until it is told how much time has passed: what tests give in wherever a program's own
/// clock is asked for. Any thread may use it. It starts at zero.
class ManualClock final : public Clock {
public:
    ManualClock();
    ~ManualClock() override;

    Time now() const override;
    std::unique_ptr<Alarm> after(Duration delay, std::function<void()> ring) override;

    /// Lets that much time pass: the alarms due by then ring, in the order of their deadlines and of their setting,
    /// each from the loop of the executor that set it, and so after this call has returned if that is the caller's own.
    void advance(Duration duration);

    /// How many alarms are set and have not rung.
    int pendingAlarms() const;
    /// How long the next of them still has to go; none without one.
    std::optional<Duration> untilNextAlarm() const;

private:
    class Core;
    std::shared_ptr<Core> _core;
};

} // namespace zelk

#pragma once

#include "Platform/UserDefaults.h"
#include "Support/Clock.h"

#include <QDateTime>

#include <functional>
#include <memory>

namespace zelk {

/// When a check is due by itself: a day after the last one, which the user's defaults remember across restarts by the
/// calendar. A calendar that was set back, so that the last check lies ahead, begins the day anew: checks neither stop
/// until it has caught up nor come one after the other. While the program runs the day is the clock's.
class UpdateSchedule {
public:
    using WallTime = std::function<QDateTime()>;

    UpdateSchedule(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<Clock> clock, WallTime wallTime,
                   std::function<void()> due);

    /// Begins to call `due`, on a later turn of the loop: soon, when the last check is a day old or none is known.
    void start();
    void stop();
    /// A check begins, whoever asked for it: the next is due in a day.
    void checked();

private:
    void wait(Clock::Duration delay);
    Clock::Duration untilDue();

    const std::shared_ptr<UserDefaults> _defaults;
    const std::shared_ptr<Clock> _clock;
    const WallTime _wallTime;
    const std::function<void()> _due;
    std::unique_ptr<Clock::Alarm> _alarm;
};

} // namespace zelk

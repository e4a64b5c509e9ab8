#include "Platform/BootClock.h"

#include "Platform/UniqueFd.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cstdint>

#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

namespace zelk {

namespace {

using namespace std::chrono;

timespec toTimespec(nanoseconds duration) {
    const auto whole = duration_cast<seconds>(duration);
    return {.tv_sec = static_cast<time_t>(whole.count()), .tv_nsec = static_cast<long>((duration - whole).count())};
}

class TimerFdAlarm final : public Clock::Alarm {
public:
    TimerFdAlarm(UniqueFd fd, std::function<void()> ring)
        : _fd(std::move(fd)), _notifier(_fd.get(), QSocketNotifier::Read), _ring(std::move(ring)) {
        QObject::connect(&_notifier, &QSocketNotifier::activated, [this] {
            _notifier.setEnabled(false);
            // The alarm may be dropped by what it rings for.
            const auto goOn = std::move(_ring);
            goOn();
        });
    }

private:
    UniqueFd _fd;
    QSocketNotifier _notifier;
    std::function<void()> _ring;
};

/// For a machine that has no descriptor left: it stops in suspend, and rings late rather than never.
class TimerAlarm final : public Clock::Alarm {
public:
    TimerAlarm(nanoseconds delay, std::function<void()> ring) {
        _timer.setSingleShot(true);
        _timer.setTimerType(Qt::PreciseTimer);
        _timer.callOnTimeout([ring = std::move(ring)] {
            const auto goOn = ring;
            goOn();
        });
        _timer.start(ceil<milliseconds>(delay));
    }

private:
    QTimer _timer;
};

} // namespace

Clock::Time BootClock::now() const {
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

std::unique_ptr<Clock::Alarm> BootClock::after(Duration delay, std::function<void()> ring) {
    // A time of nothing would disarm the timer instead of letting it ring at once.
    delay = std::max<Duration>(delay, nanoseconds(1));
    UniqueFd fd(::timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC));
    const itimerspec when{.it_interval = {}, .it_value = toTimespec(delay)};
    if (!fd || ::timerfd_settime(fd.get(), 0, &when, nullptr) != 0)
        return std::make_unique<TimerAlarm>(delay, std::move(ring));
    return std::make_unique<TimerFdAlarm>(std::move(fd), std::move(ring));
}

} // namespace zelk

#include "Services/UpdateSchedule.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zelk {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto interval = 24h;
const QString lastCheckKey = u"SULastCheckTime"_s;

} // namespace

UpdateSchedule::UpdateSchedule(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<Clock> clock, WallTime wallTime,
                               std::function<void()> due)
    : _defaults(std::move(defaults)), _clock(std::move(clock)), _wallTime(std::move(wallTime)), _due(std::move(due)) {}

void UpdateSchedule::start() {
    wait(untilDue());
}

void UpdateSchedule::stop() {
    _alarm.reset();
}

void UpdateSchedule::checked() {
    _defaults->set(lastCheckKey, _wallTime().toUTC().toString(Qt::ISODate));
    if (_alarm)
        wait(interval);
}

void UpdateSchedule::wait(Clock::Duration delay) {
    _alarm = _clock->after(delay, [this] {
        wait(interval);
        _due();
    });
}

Clock::Duration UpdateSchedule::untilDue() {
    const auto last = QDateTime::fromString(_defaults->value(lastCheckKey).toString(), Qt::ISODate);
    if (!last.isValid())
        return 0s;
    const auto now = _wallTime();
    if (last > now) {
        _defaults->set(lastCheckKey, now.toUTC().toString(Qt::ISODate));
        return interval;
    }
    const auto passed = std::chrono::seconds(last.secsTo(now));
    return std::max<Clock::Duration>(interval - std::min<std::chrono::seconds>(passed, interval), 0s);
}

} // namespace zelk

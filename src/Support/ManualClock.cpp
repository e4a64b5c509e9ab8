#include "Support/ManualClock.h"

#include "Support/SerialExecutor.h"

#include <map>
#include <mutex>
#include <utility>

namespace zelk {

namespace {

struct Entry {
    SerialExecutor::Ref executor;
    std::function<void()> ring;
    bool isDropped = false; // the setting thread's own
};

void ringLater(const std::shared_ptr<Entry> &entry) {
    const auto executor = std::exchange(entry->executor, nullptr);
    executor->post([entry] {
        if (entry->isDropped)
            return;
        // What rings may drop the alarm, and with it what the entry holds.
        const auto ring = std::move(entry->ring);
        ring();
    });
}

} // namespace

class ManualClock::Core {
public:
    using Key = std::pair<Time, quint64>; // deadline, and the order of setting

    Time now() const {
        const std::scoped_lock lock(_mutex);
        return _now;
    }

    Key set(Duration delay, const std::shared_ptr<Entry> &entry) {
        const std::scoped_lock lock(_mutex);
        const Key key(_now + delay, ++_set);
        if (delay <= Duration::zero())
            ringLater(entry);
        else
            _alarms.emplace(key, entry);
        return key;
    }

    void drop(const Key &key) {
        const std::scoped_lock lock(_mutex);
        _alarms.erase(key);
    }

    void advance(Duration duration) {
        const std::scoped_lock lock(_mutex);
        _now += duration;
        while (!_alarms.empty() && _alarms.begin()->first.first <= _now) {
            ringLater(_alarms.begin()->second);
            _alarms.erase(_alarms.begin());
        }
    }

    int pending() const {
        const std::scoped_lock lock(_mutex);
        return static_cast<int>(_alarms.size());
    }

    std::optional<Duration> untilNext() const {
        const std::scoped_lock lock(_mutex);
        if (_alarms.empty())
            return std::nullopt;
        return _alarms.begin()->first.first - _now;
    }

private:
    mutable std::mutex _mutex;
    Time _now{0};
    quint64 _set = 0;
    std::map<Key, std::shared_ptr<Entry>> _alarms;
};

namespace {

template<typename Core>
class ManualAlarm final : public Clock::Alarm {
public:
    ManualAlarm(std::shared_ptr<Core> core, std::shared_ptr<Entry> entry, typename Core::Key key)
        : _core(std::move(core)), _entry(std::move(entry)), _key(key) {}
    ~ManualAlarm() override {
        _entry->isDropped = true;
        _core->drop(_key);
    }

private:
    std::shared_ptr<Core> _core;
    std::shared_ptr<Entry> _entry;
    typename Core::Key _key;
};

} // namespace

ManualClock::ManualClock() : _core(std::make_shared<Core>()) {}
ManualClock::~ManualClock() = default;

Clock::Time ManualClock::now() const {
    return _core->now();
}

std::unique_ptr<Clock::Alarm> ManualClock::after(Duration delay, std::function<void()> ring) {
    const auto entry = std::make_shared<Entry>();
    entry->executor = SerialExecutor::current();
    entry->ring = std::move(ring);
    Q_ASSERT_X(entry->executor, "ManualClock", "an alarm set on a thread without an executor");
    const auto key = _core->set(delay, entry);
    return std::make_unique<ManualAlarm<Core>>(_core, entry, key);
}

void ManualClock::advance(Duration duration) {
    _core->advance(duration);
}
int ManualClock::pendingAlarms() const {
    return _core->pending();
}
std::optional<Clock::Duration> ManualClock::untilNextAlarm() const {
    return _core->untilNext();
}

} // namespace zelk

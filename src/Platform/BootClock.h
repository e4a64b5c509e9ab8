#pragma once

#include "Support/Clock.h"

namespace zelk {

/// The clock of the running machine. It goes on while the machine sleeps, so that a deadline that has passed meanwhile
/// counts as passed after waking up.
class BootClock final : public Clock {
public:
    Time now() const override;
    std::unique_ptr<Alarm> after(Duration delay, std::function<void()> ring) override;
};

} // namespace zelk

#pragma once

#include <QElapsedTimer>
#include <QTest>

#include <functional>

namespace zelk::engine::testing {

/// Waits until something is true that only the system tells. It needn't stay true.
inline bool soon(const std::function<bool()> &condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(20'000)) {
            return false;
        }
        QTest::qSleep(2);
    }
    return true;
}

} // namespace zelk::engine::testing

#pragma once

#include <QTimer>

#include <functional>

namespace zelk {

// Gathers any number of requests into one call, at most once in 16 ms: counts are walked afresh on each read, so they
// are read once a frame however many events came. Costs nothing while nothing is requested.
class FrameTick {
public:
    explicit FrameTick(std::function<void()> body) {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(interval);
        QObject::connect(&m_timer, &QTimer::timeout, std::move(body));
    }

    void request() {
        if (!m_timer.isActive())
            m_timer.start();
    }

    static constexpr int interval = 16; // milliseconds

private:
    QTimer m_timer;
};

} // namespace zelk

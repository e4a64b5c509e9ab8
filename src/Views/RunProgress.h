#pragma once

#include "Platform/TaskBarProgress.h"
#include "State/SyncStore.h"
#include "Support/Clock.h"

#include <QObject>

#include <memory>

namespace zelk {

// Keeps the task bar at how far the run is, while there is one. It says so at most four times a second, and only what
// it hasn't said.
class RunProgress : public QObject {
public:
    // The store outlives it.
    RunProgress(const SyncStore &sync, std::shared_ptr<TaskBarProgress> taskBar, std::shared_ptr<Clock> clock);
    ~RunProgress() override;
    Q_DISABLE_COPY_MOVE(RunProgress)

    static constexpr std::chrono::milliseconds interval{250};

private:
    void followPhase();
    void followCounts();
    void tell();

    static constexpr int nothing = -1;

    const SyncStore &m_sync;
    const std::shared_ptr<TaskBarProgress> m_taskBar;
    const std::shared_ptr<Clock> m_clock;
    int m_told = nothing; // in percent
    std::unique_ptr<Clock::Alarm> m_pause;
    bool m_due = false; // whether something has changed in the pause
};

} // namespace zelk

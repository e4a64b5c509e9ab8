#include "Views/RunProgress.h"

#include <cmath>
#include <utility>

namespace zelk {

RunProgress::RunProgress(const SyncStore &sync, std::shared_ptr<TaskBarProgress> taskBar, std::shared_ptr<Clock> clock)
    : m_sync(sync), m_taskBar(std::move(taskBar)), m_clock(std::move(clock)) {
    connect(&m_sync, &SyncStore::phaseChanged, this, &RunProgress::followPhase);
    connect(m_sync.groups(), &PlaylistGroups::countsChanged, this, &RunProgress::followCounts);
    followPhase();
}

RunProgress::~RunProgress() {
    if (m_told != nothing)
        m_taskBar->clear();
}

void RunProgress::followPhase() {
    if (m_sync.isRunning()) {
        followCounts();
        return;
    }
    m_pause.reset();
    m_due = false;
    if (std::exchange(m_told, nothing) != nothing)
        m_taskBar->clear();
}

void RunProgress::followCounts() {
    if (m_pause)
        m_due = true;
    else if (m_sync.isRunning())
        tell();
}

void RunProgress::tell() {
    const int percent = static_cast<int>(std::floor(m_sync.overallFraction() * 100));
    if (percent != std::exchange(m_told, percent))
        m_taskBar->show(percent / 100.0);
    // Reading how far the run is goes through all of its rows, so the pause is due whether or not there was news.
    m_pause = m_clock->after(interval, [this] {
        m_pause.reset();
        if (std::exchange(m_due, false))
            tell();
    });
}

} // namespace zelk

#include "Views/RunNotice.h"

#include "Views/SummaryTexts.h"

#include <utility>

namespace zelk {

RunNotice::RunNotice(const SyncStore &sync, Surroundings surroundings)
    : m_sync(sync), m_outside(std::move(surroundings)), m_running(sync.isRunning()) {
    DesktopNotifier *const notifier = m_outside.notifier.get();
    connect(&m_sync, &SyncStore::phaseChanged, this, &RunNotice::follow);
    connect(notifier, &DesktopNotifier::activated, this, [this] { m_outside.bringToFront(); });
    // Whoever comes to the window sees there what it says.
    connect(m_outside.activation.get(), &ApplicationActivation::didBecomeActive, notifier, &DesktopNotifier::withdraw);
}

void RunNotice::follow() {
    const bool ran = std::exchange(m_running, m_sync.isRunning());
    if (m_running && !ran)
        m_outside.notifier->withdraw(); // it was about the run before
    const SyncPhase phase = m_sync.phase();
    if (!ran || (phase != SyncPhase::done && phase != SyncPhase::interrupted) || m_outside.isInFront())
        return;
    const SummaryTexts::RunCounts counts{m_sync.overallCompleted(), m_sync.overallTotal(), m_sync.reviewCount(),
                                         m_sync.failedCount()};
    m_outside.notifier->notify(SummaryTexts::phaseText(phase), SummaryTexts::runLine(m_sync.summary(), counts));
}

} // namespace zelk

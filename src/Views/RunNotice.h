#pragma once

#include "Platform/ApplicationActivation.h"
#include "Platform/DesktopNotifier.h"
#include "State/SyncStore.h"

#include <QObject>

#include <functional>
#include <memory>

namespace zelk {

// Tells a user who is elsewhere once how a run has ended. One that they cancelled needs no telling.
class RunNotice : public QObject {
public:
    // What it needs of the desktop and of the window.
    struct Surroundings {
        std::shared_ptr<DesktopNotifier> notifier;
        std::shared_ptr<ApplicationActivation> activation;
        std::function<bool()> isInFront; // whether the user looks at the application
        std::function<void()> bringToFront;
    };

    // The store outlives it.
    RunNotice(const SyncStore &sync, Surroundings surroundings);

private:
    void follow();

    const SyncStore &m_sync;
    const Surroundings m_outside;
    bool m_running = false;
};

} // namespace zelk

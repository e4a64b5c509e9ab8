#include "Services/AutomationPermissionMonitor.h"

#include "Platform/ApplicationActivation.h"
#include "Support/SharedInstance.h"
#include "Support/Task.h"

#include <QPointer>

namespace zelk {

AutomationPermissionMonitor::AutomationPermissionMonitor(AppleMusicLocalAccess &access,
                                                         const ApplicationActivation &activation)
    : _access(access), _status(access.determine(false)) {
    connect(&activation, &ApplicationActivation::didBecomeActive, this, [this] {
        startTask(this, [self = QPointer(this)](const std::stop_token &) -> QCoro::Task<> {
            if (self)
                self->recheck();
            co_return;
        });
    });
}

AutomationPermissionMonitor &AutomationPermissionMonitor::shared() {
    return SharedInstance<AutomationPermissionMonitor>::get();
}

void AutomationPermissionMonitor::recheck() {
    setStatus(_access.determine(false));
}

QCoro::Task<AppleMusicLocalAccess::Status> AutomationPermissionMonitor::requestAccess() {
    const QPointer self(this);
    auto requesting = _access.request();
    const auto answered = co_await requesting;
    // It may have changed on the way back from the other thread.
    if (self)
        self->recheck();
    co_return self ? self->_status : answered;
}

void AutomationPermissionMonitor::setStatus(AppleMusicLocalAccess::Status status) {
    if (_status == status)
        return;
    _status = status;
    Q_EMIT statusChanged();
}

} // namespace zelk

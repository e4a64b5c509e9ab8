#pragma once

#include "Services/AppleMusicLocalAccess.h"

#include <QCoroTask>
#include <QObject>

namespace zelk {

class ApplicationActivation;

/// The consent to read the user's own music library as it stands, for the screens to observe. It is read anew whenever
/// the user comes back to the application, and only a real change is told. It lives on the main thread.
class AutomationPermissionMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::ConsentStatus status READ status NOTIFY statusChanged)

public:
    /// `access` must outlive it.
    AutomationPermissionMonitor(AppleMusicLocalAccess &access, const ApplicationActivation &activation);

    /// The process's own, which the application makes.
    static AutomationPermissionMonitor &shared();

    AppleMusicLocalAccess::Status status() const { return _status; }

    /// Reads the status, without asking.
    void recheck();
    /// Asks, and gives the status that holds then. The monitor may go meanwhile.
    QCoro::Task<AppleMusicLocalAccess::Status> requestAccess();

Q_SIGNALS:
    void statusChanged();

private:
    void setStatus(AppleMusicLocalAccess::Status status);

    AppleMusicLocalAccess &_access;
    AppleMusicLocalAccess::Status _status;
};

} // namespace zelk

#pragma once

#include "Platform/ConsentStatus.h"
#include "Support/Logger.h"

#include <QCoroTask>

#include <memory>

namespace zelk {

class ConsentSettings;
class MusicLibraryConsent;

/// Asks for the consent to read the user's own music library, and says where it stands. It shows no error: what isn't
/// clearly a yes or a no is undetermined. It lives on the main thread.
class AppleMusicLocalAccess {
public:
    using Status = ConsentStatus;

    AppleMusicLocalAccess(std::shared_ptr<MusicLibraryConsent> consent, std::shared_ptr<ConsentSettings> settings);

    /// The process's own, which the application makes.
    static AppleMusicLocalAccess &shared();

    /// Asks if that is needed, for as long as the user takes; never throws. Where nothing is asked, since the user has
    /// answered before, and the answer still gives no access, it opens the place where that can be seen and changed.
    /// The service may go meanwhile.
    QCoro::Task<Status> request();
    /// Opens the place where a consent can be changed.
    void openAutomationSettings();

private:
    friend class AutomationPermissionMonitor; // which reads without asking

    Status determine(bool askIfNeeded) const;

    const Logger _logger{"apple-local-access"};
    const std::shared_ptr<MusicLibraryConsent> _consent;
    const std::shared_ptr<ConsentSettings> _settings;
};

} // namespace zelk

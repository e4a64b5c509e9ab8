#pragma once

#include "App/AppModel.h"
#include "Platform/ApplicationActivation.h"
#include "Platform/MusicLibraryConsent.h"
#include "Services/AppleMusicLocalAccess.h"
#include "Support/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace zelk {

/// The user defaults of a user who has just arrived, in a file that goes with them.
inline std::shared_ptr<UserDefaults> freshDefaults() {
    struct Held {
        QTemporaryDir folder;
        UserDefaults defaults{folder.filePath(QStringLiteral("zelk.conf"))};
    };
    const auto held = std::make_shared<Held>();
    return {held, &held->defaults};
}

/// Those of a user who has been through the setup, so that it doesn't open by itself.
inline std::shared_ptr<UserDefaults> onboardedDefaults() {
    auto defaults = freshDefaults();
    defaults->set(QStringLiteral("didOnboard"), true);
    return defaults;
}

namespace detail {

class GivenConsent final : public MusicLibraryConsent {
public:
    explicit GivenConsent(ConsentStatus status) : _status(status) {}
    ConsentStatus determine(bool) override { return _status; }

private:
    const ConsentStatus _status;
};

/// What stands behind the surroundings of one model, and goes with the last of them.
struct HeldSurroundings {
    explicit HeldSurroundings(ConsentStatus consent) : access(std::make_shared<GivenConsent>(consent), nullptr) {}

    QTemporaryDir folder;
    AppleMusicLocalAccess access;
    ApplicationActivation activation;
    AutomationPermissionMonitor monitor{access, activation};
};

} // namespace detail

/// The surroundings of a model under test, which has nothing of this machine's own: the defaults of a user who has just
/// arrived, no command-line tool, and that consent to read the user's music library.
inline AppModel::Surroundings surroundings(std::shared_ptr<Clock> clock = std::make_shared<ManualClock>(),
                                           ConsentStatus consent = ConsentStatus::undetermined) {
    const auto held = std::make_shared<detail::HeldSurroundings>(consent);
    return {.clock = std::move(clock),
            .defaults = freshDefaults(),
            .toolPlaces = {.home = held->folder.filePath(QStringLiteral("home")), .root = held->folder.path()},
            .toolTarget = [] { return std::optional<QString>(); },
            .automationPermission = {held, &held->monitor}};
}

} // namespace zelk

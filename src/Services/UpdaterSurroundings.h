#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"
#include "Services/UpdateUserDriver.h"
#include "Support/Clock.h"

#include <QCoroTask>
#include <QDateTime>

#include <functional>
#include <memory>
#include <stop_token>

class QNetworkAccessManager;

namespace zelk {

/// All that an updater stands on.
struct UpdaterSurroundings {
    /// Of the running application. Its `Info.json` says
    ///   `SUFeedURL`: the appcast's address; absent or empty when this build has no updates;
    ///   `SUPublicEDKey`: the Ed25519 key that signs updates, 32 bytes in base64;
    ///   `CFBundleVersion`: the version that is compared; `CFBundleShortVersionString`: the one that is shown;
    ///   `SUEnableAutomaticChecks`: whether it checks by itself as long as the user has not chosen; false when absent.
    Bundle bundle;
    /// Where a download goes: the folder that holds the bundle.
    QString folder{};
    /// Keeps `SUEnableAutomaticChecks` once chosen, `SULastCheckTime` (ISO 8601, UTC) and `SUSkippedVersion`.
    std::shared_ptr<UserDefaults> defaults{};
    std::shared_ptr<Clock> clock{};
    /// What time the user's calendar says it is.
    std::function<QDateTime()> wallTime{};
    std::shared_ptr<QNetworkAccessManager> network{};
    /// Whether the package manager brought the file of that path.
    std::function<QCoro::Task<bool>(QString path, std::stop_token stop)> isOwnedByPackageManager{};
    /// Shows the file of that path among its neighbours.
    std::function<void(const QString &path)> showInFolder{};
    /// Outlives the updater.
    UpdateUserDriver *driver = nullptr;
    /// Nobody is there to be told: nothing is checked that wasn't asked for.
    bool unattended = false;
};

using UpdaterSurroundingsRef = std::shared_ptr<const UpdaterSurroundings>;

/// Of the bundle: what a person reads, "0.0.0" when it doesn't say.
QString shownVersion(const Bundle &bundle);
/// Of the bundle: what updates are compared with.
QString comparedVersion(const Bundle &bundle);

} // namespace zelk

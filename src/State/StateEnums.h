#pragma once

#include <QObject>

/// The enumerations of the application's state, in a meta-object of their own so that QML and logs know their names.
namespace zelk::StateEnums {
Q_NAMESPACE

/// The phase of the sync run. Nothing enters `finishing` today; it counts as running wherever phases are told apart.
enum class SyncPhase { idle, preparing, running, finishing, done, cancelled, interrupted };
Q_ENUM_NS(SyncPhase)

/// How a row is to be shown.
enum class StatusRole { queued, working, review, done, failed, skipped, present };
Q_ENUM_NS(StatusRole)

/// How the installation of the outside tools stands.
enum class ProvisioningPhase { idle, running, ready, failed };
Q_ENUM_NS(ProvisioningPhase)

/// How the command-line tool stands.
enum class CLIToolKind {
    unknown,
    notInstalled,
    installedSymlink,
    installedSymlinkStale,
    foreignCopy,
    fallbackInstalled,
    dangling
};
Q_ENUM_NS(CLIToolKind)

} // namespace zelk::StateEnums

namespace zelk {

using StateEnums::CLIToolKind;
using StateEnums::ProvisioningPhase;
using StateEnums::StatusRole;
using StateEnums::SyncPhase;

} // namespace zelk

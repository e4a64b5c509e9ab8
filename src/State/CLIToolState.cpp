#include "State/CLIToolState.h"

namespace zelk {

CLIToolKind CLIToolState::kind() const {
    return match(
        *this, [](const Unknown &) { return CLIToolKind::unknown; },
        [](const NotInstalled &) { return CLIToolKind::notInstalled; },
        [](const InstalledSymlink &) { return CLIToolKind::installedSymlink; },
        [](const InstalledSymlinkStale &) { return CLIToolKind::installedSymlinkStale; },
        [](const ForeignCopy &) { return CLIToolKind::foreignCopy; },
        [](const FallbackInstalled &) { return CLIToolKind::fallbackInstalled; },
        [](const Dangling &) { return CLIToolKind::dangling; });
}

QString CLIToolState::target() const {
    const auto *installed = caseOf<InstalledSymlink>(*this);
    return installed ? installed->target : QString();
}

QString CLIToolState::path() const {
    if (const auto *copy = caseOf<ForeignCopy>(*this))
        return copy->path;
    const auto *installed = caseOf<FallbackInstalled>(*this);
    return installed ? installed->path : QString();
}

QString CLIToolState::version() const {
    const auto *copy = caseOf<ForeignCopy>(*this);
    return copy ? copy->version.value_or(QString()) : QString();
}

} // namespace zelk

#pragma once

#include "State/StateEnums.h"
#include "Transport/Tagged.h"

#include <QString>

#include <optional>
#include <utility>
#include <variant>

namespace zelk {

/// What stands where the command `zelk` is looked for.
struct CLIToolState {
    /// Nobody has looked yet.
    struct Unknown {
        bool operator==(const Unknown &) const = default;
    };
    /// There is nothing at either place.
    struct NotInstalled {
        bool operator==(const NotInstalled &) const = default;
    };
    /// A link to the engine of this application's bundle.
    struct InstalledSymlink {
        QString target;
        bool operator==(const InstalledSymlink &) const = default;
    };
    /// A link to something else that exists.
    struct InstalledSymlinkStale {
        bool operator==(const InstalledSymlinkStale &) const = default;
    };
    /// A regular file, which isn't ours.
    struct ForeignCopy {
        QString path;
        std::optional<QString> version;
        bool operator==(const ForeignCopy &) const = default;
    };
    /// A link in the user's own folder, when that is the chosen place. `detect()` doesn't tell it from the others.
    struct FallbackInstalled {
        QString path;
        bool operator==(const FallbackInstalled &) const = default;
    };
    /// A link to something that doesn't exist.
    struct Dangling {
        bool operator==(const Dangling &) const = default;
    };

    static CLIToolState unknown() { return {Unknown{}}; }
    static CLIToolState notInstalled() { return {NotInstalled{}}; }
    static CLIToolState installedSymlink(QString target) { return {InstalledSymlink{std::move(target)}}; }
    static CLIToolState installedSymlinkStale() { return {InstalledSymlinkStale{}}; }
    static CLIToolState foreignCopy(QString path, std::optional<QString> version = {}) {
        return {ForeignCopy{std::move(path), std::move(version)}};
    }
    static CLIToolState fallbackInstalled(QString path) { return {FallbackInstalled{std::move(path)}}; }
    static CLIToolState dangling() { return {Dangling{}}; }

    CLIToolKind kind() const;
    // The payloads; empty where the case has none.
    QString target() const;
    QString path() const;
    QString version() const;

    std::variant<Unknown, NotInstalled, InstalledSymlink, InstalledSymlinkStale, ForeignCopy, FallbackInstalled,
                 Dangling>
        value; // for match() and caseOf()
    bool operator==(const CLIToolState &) const = default;
};

} // namespace zelk

#pragma once

#include <QDir>
#include <QString>

#include <array>

namespace zelk {

/// Where the command `zelk` may stand: for all users of the machine, or for this one.
struct CLIToolPlaces {
    QString home; ///< the user's folder, absolute
    QString root; ///< what comes before "/usr/local/bin"; empty on a real machine

    static CLIToolPlaces ofThisUser() { return {.home = QDir::homePath(), .root = {}}; }

    QString systemFolder() const { return root + QStringLiteral("/usr/local/bin"); }
    QString systemLink() const { return systemFolder() + QStringLiteral("/zelk"); }
    QString userFolder() const { return (home == u'/' ? QString() : home) + QStringLiteral("/.local/bin"); }
    QString userLink() const { return userFolder() + QStringLiteral("/zelk"); }
    /// In the order of all searches.
    std::array<QString, 2> links() const { return {systemLink(), userLink()}; }
};

} // namespace zelk

#pragma once

#include "Platform/Bundle.h"
#include "Platform/RaisedShell.h"
#include "Platform/Trash.h"
#include "State/CLIToolPlaces.h"
#include "Support/Logger.h"

#include <QProcessEnvironment>
#include <QString>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

namespace zelk {

/// Puts a link named `zelk` to the engine on the user's command path and takes it away again. Each call blocks its
/// caller, for as long as a password dialog stands; one caller at a time, on any thread.
class CLIInstaller {
public:
    class InstallError : public std::exception {
    public:
        /// The administrator's rights were refused, or what they were asked for failed.
        struct EscalationFailed {
            QString reason;
            bool operator==(const EscalationFailed &) const = default;
        };
        struct IoFailed {
            QString reason;
            bool operator==(const IoFailed &) const = default;
        };
        /// There is no engine to link to.
        struct NoHelper {
            bool operator==(const NoHelper &) const = default;
        };

        static InstallError escalationFailed(QString reason) {
            return InstallError(EscalationFailed{std::move(reason)});
        }
        static InstallError ioFailed(QString reason) { return InstallError(IoFailed{std::move(reason)}); }
        static InstallError noHelper() { return InstallError(NoHelper{}); }

        /// The text to show to the user.
        QString errorDescription() const;
        const char *what() const noexcept override { return _what.constData(); } // the description in UTF-8

        friend bool operator==(const InstallError &a, const InstallError &b) { return a.value == b.value; }

        std::variant<EscalationFailed, IoFailed, NoHelper> value; // for match() and caseOf()

    private:
        explicit InstallError(decltype(value) failure);
        QByteArray _what;
    };

    /// The machine as the installer sees it.
    struct Surroundings {
        CLIToolPlaces places;
        Bundle bundle;
        QProcessEnvironment environment;
        std::shared_ptr<RaisedShell> shell;
        std::shared_ptr<Trash> trash;
        /// Whether there is such a folder and this process may change what is in it.
        std::function<bool(const QString &folder)> isWritable;
        /// How long a program may take to tell its version.
        std::chrono::milliseconds versionPatience;

        static Surroundings ofThisMachine();
    };

    /// That of the application.
    static std::shared_ptr<CLIInstaller> shared();
    explicit CLIInstaller(Surroundings surroundings) : _around(std::move(surroundings)) {}

    // Each throws `InstallError` and, where the file system refuses, std::runtime_error with the path and the reason.
    // `stop` ends the wait for a password with `Cancelled`; nothing is done after that.

    /// Links for all users where this process may or an administrator lets it, else for this user. Gives the path of
    /// the link. What stands there and is no link goes to the Trash first; what can't go there stays.
    QString install(std::stop_token stop = {});
    /// Takes away the links at both places, with an administrator's help where it must. What is no link stays, and so
    /// does a link whose target is gone.
    void uninstall(std::stop_token stop = {});

    /// What the installed program says of itself, on either channel. Never throws.
    std::optional<QString> detectedVersion() const;
    /// Whether the user's own place is on the command path. Never throws.
    bool localBinOnPath() const;
    /// Has the user's shell put it there from now on. A second call does so twice.
    void addLocalBinToPath();

private:
    /// Moves what is no link to the Trash. What can't go there stays: it is in the way then, and never deleted.
    void moveAside(const QString &path) const;
    void makeSymlink(const QString &path, const QString &target) const;
    void installWithAdmin(const QString &target, const QString &path, std::stop_token stop) const;
    QString runAdmin(const QString &command, std::stop_token stop) const;

    const Logger _logger{"cli-installer"};
    const Surroundings _around;
};

} // namespace zelk

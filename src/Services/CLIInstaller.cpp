#include "Services/CLIInstaller.h"

#include "Platform/CommandRun.h"
#include "Support/Cancelled.h"
#include "Transport/HelperError.h"
#include "Transport/HelperLocator.h"
#include "Transport/Tagged.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace zelk {

namespace {

using namespace std::chrono_literals;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(CLIInstaller)
};

std::filesystem::path native(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

bool isLink(const QString &path) {
    return QFileInfo(path).isSymLink();
}

/// Something that the user may have put there himself.
bool isForeign(const QString &path) {
    return QFileInfo::exists(path) && !isLink(path);
}

[[noreturn]] void fail(const QString &path, const QString &reason) {
    throw std::runtime_error((path + QStringLiteral(": ") + reason).toStdString());
}

QString messageOf(const std::error_code &failure) {
    return QString::fromLocal8Bit(failure.message());
}

QString inSingleQuotes(const QString &path) {
    return u'\'' + path + u'\'';
}

} // namespace

CLIInstaller::InstallError::InstallError(decltype(value) failure)
    : value(std::move(failure)), _what(errorDescription().toUtf8()) {}

QString CLIInstaller::InstallError::errorDescription() const {
    return match(
        *this,
        [](const EscalationFailed &failure) {
            return Texts::tr("Administrator authorization failed: ") + failure.reason;
        },
        [](const IoFailed &failure) { return Texts::tr("Could not install the CLI: ") + failure.reason; },
        [](const NoHelper &) { return Texts::tr("The bundled zelk helper could not be located."); });
}

CLIInstaller::Surroundings CLIInstaller::Surroundings::ofThisMachine() {
    return {.places = CLIToolPlaces::ofThisUser(),
            .bundle = Bundle::main(),
            .environment = QProcessEnvironment::systemEnvironment(),
            .shell = RaisedShell::system(),
            .trash = Trash::system(),
            .isWritable = [](const QString &folder) { return QFileInfo(folder).isWritable(); },
            .versionPatience = 10s};
}

std::shared_ptr<CLIInstaller> CLIInstaller::shared() {
    static const auto installer = std::make_shared<CLIInstaller>(Surroundings::ofThisMachine());
    return installer;
}

QString CLIInstaller::install(std::stop_token stop) {
    QString target;
    try {
        target = HelperLocator::locate(_around.bundle, _around.environment);
    } catch (const HelperError &) {
        throw InstallError::noHelper();
    }

    const QString link = _around.places.systemLink();
    moveAside(link);
    if (_around.isWritable(_around.places.systemFolder())) {
        makeSymlink(link, target);
        return link;
    }
    try {
        installWithAdmin(target, link, std::move(stop));
        return link;
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &failure) {
        _logger.info(QStringLiteral("not installed for all users: %1").arg(describe(failure)));
    }

    std::error_code failure;
    std::filesystem::create_directories(native(_around.places.userFolder()), failure);
    if (failure)
        fail(_around.places.userFolder(), messageOf(failure));
    moveAside(_around.places.userLink());
    makeSymlink(_around.places.userLink(), target);
    return _around.places.userLink();
}

void CLIInstaller::uninstall(std::stop_token stop) {
    for (const QString &link : _around.places.links()) {
        if (!QFileInfo::exists(link) || !isLink(link))
            continue;
        const QString folder = QFileInfo(link).path();
        if (!_around.isWritable(folder)) {
            runAdmin(QStringLiteral("rm -f ") + inSingleQuotes(link), stop);
            continue;
        }
        std::error_code failure;
        std::filesystem::remove(native(link), failure);
        if (failure)
            fail(link, messageOf(failure));
    }
}

std::optional<QString> CLIInstaller::detectedVersion() const {
    for (const QString &program : _around.places.links()) {
        if (!isExecutableFile(program))
            continue;
        try {
            const CommandPatience patience{.most = _around.versionPatience, .stop = {}};
            const auto end = runCommand(program, {QStringLiteral("--version")}, CommandErrors::withTheOutput, patience);
            const auto text = trimmedText(end.output);
            if (text && !text->isEmpty())
                return text;
        } catch (const std::system_error &failure) {
            _logger.info(QStringLiteral("no version: %1").arg(describe(failure)));
        }
    }
    return std::nullopt;
}

bool CLIInstaller::localBinOnPath() const {
    const auto folders = _around.environment.value(QStringLiteral("PATH")).split(u':');
    return folders.contains(_around.places.userFolder());
}

void CLIInstaller::addLocalBinToPath() {
    const QString shell = _around.environment.value(QStringLiteral("SHELL"), QStringLiteral("/bin/zsh"));
    const bool isZsh = shell.contains(QStringLiteral("zsh"));
    const QString path = _around.places.home + (isZsh ? QStringLiteral("/.zshrc") : QStringLiteral("/.bash_profile"));
    const QByteArray line = "\nexport PATH=\"$HOME/.local/bin:$PATH\"\n";

    QFile present(path);
    if (present.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        if (present.write(line) != line.size() || !present.flush())
            fail(path, present.errorString());
        return;
    }
    // One that is there but can't be opened is the user's own work and is not replaced.
    if (QFileInfo::exists(path))
        fail(path, present.errorString());
    QSaveFile fresh(path);
    if (!fresh.open(QIODevice::WriteOnly) || fresh.write(line) != line.size() || !fresh.commit())
        fail(path, fresh.errorString());
}

void CLIInstaller::moveAside(const QString &path) const {
    if (!isForeign(path))
        return;
    try {
        _around.trash->put(path);
    } catch (const std::exception &failure) {
        _logger.error(QStringLiteral("not moved to the Trash: %1").arg(describe(failure)));
    }
}

void CLIInstaller::makeSymlink(const QString &path, const QString &target) const {
    std::error_code failure;
    if (isLink(path))
        std::filesystem::remove(native(path), failure);
    std::filesystem::create_symlink(native(target), native(path), failure);
    if (failure)
        throw InstallError::ioFailed(messageOf(failure));
}

void CLIInstaller::installWithAdmin(const QString &target, const QString &path, std::stop_token stop) const {
    // The administrator's `ln -f` would delete it.
    if (isForeign(path))
        throw InstallError::ioFailed(path + QStringLiteral(" is in the way"));
    runAdmin(QStringLiteral("mkdir -p ") + _around.places.systemFolder() + QStringLiteral(" && ln -sf ") +
                 inSingleQuotes(target) + u' ' + inSingleQuotes(path),
             std::move(stop));
}

QString CLIInstaller::runAdmin(const QString &command, std::stop_token stop) const {
    try {
        return _around.shell->run(command, std::move(stop));
    } catch (const RaisedShell::Failure &failure) {
        if (failure.reason() == RaisedShell::Failure::Reason::dismissed)
            _logger.info(QStringLiteral("the password dialog was dismissed"));
        throw InstallError::escalationFailed(failure.text());
    }
}

} // namespace zelk

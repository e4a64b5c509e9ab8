#include "State/CLIToolStore.h"

#include "Transport/HelperError.h"
#include "Transport/HelperLocator.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace zelk {

namespace {

/// Where a link points, as it is written in it; none if `path` is no link.
std::optional<QString> destinationOf(const QString &path) {
    std::error_code failure;
    const auto destination = std::filesystem::read_symlink(QFile::encodeName(path).toStdString(), failure);
    if (failure)
        return std::nullopt;
    return QFile::decodeName(QByteArray::fromStdString(destination.string()));
}

} // namespace

CLIToolStore::CLIToolStore(CLIToolPlaces places, PreferredTarget preferredTarget, QObject *parent)
    : QObject(parent), _places(std::move(places)), _preferredTarget(std::move(preferredTarget)) {}

std::optional<QString> CLIToolStore::engineOf(const Bundle &bundle, const QProcessEnvironment &environment) {
    try {
        return HelperLocator::locate(bundle, environment);
    } catch (const HelperError &) {
        return std::nullopt;
    }
}

void CLIToolStore::setDetectedVersion(std::optional<QString> version) {
    if (version == _detectedVersion)
        return;
    _detectedVersion = std::move(version);
    Q_EMIT detectedVersionChanged();
}

void CLIToolStore::detect() {
    auto state = look();
    if (state == _state)
        return;
    _state = std::move(state);
    Q_EMIT stateChanged();
}

CLIToolStore::State CLIToolStore::look() const {
    const auto links = _places.links();
    const auto path =
        std::find_if(links.begin(), links.end(), [](const QString &link) { return QFileInfo::exists(link); });
    if (path == links.end())
        return State::notInstalled();
    const auto destination = destinationOf(*path);
    if (!destination)
        return State::foreignCopy(*path);
    if (preferredTarget() == destination)
        return State::installedSymlink(*destination);
    // The target may have gone since the place was found.
    const QDir folder(QFileInfo(*path).path());
    return QFileInfo::exists(folder.filePath(*destination)) ? State::installedSymlinkStale() : State::dangling();
}

} // namespace zelk

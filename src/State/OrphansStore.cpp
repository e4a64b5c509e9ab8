#include "State/OrphansStore.h"

#include "State/EitherShape.h"

#include <QPointer>

#include <utility>

namespace zelk {

OrphansStore::OrphansStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : EngineStore(std::move(client), parent) {}

void OrphansStore::accumulate(const QStringList &paths) {
    const qsizetype before = _paths.size();
    for (const QString &path : paths) {
        if (_known.contains(path))
            continue;
        _known.insert(path);
        _paths.append(path);
    }
    // Who pressed Keep isn't asked again in the same run.
    if (_paths.size() == before)
        return;
    Q_EMIT pathsChanged();
    tellHasOrphans();
}

void OrphansStore::reset() {
    set({}, false);
}

QCoro::Task<> OrphansStore::listOrphans(std::vector<PlaylistSelection> selection) {
    auto asking = orLastError(
        requestInEitherShape(client(), Request::listOrphans(std::move(selection)), &OrphansResult::paths, lifetime()));
    auto paths = co_await asking;
    if (!paths)
        co_return;
    set(std::move(*paths), false);
    setLastError(std::nullopt);
}

QCoro::Task<> OrphansStore::trash(QStringList paths) {
    auto sending = sendOrLastError(Request::trashOrphans(paths));
    const bool taken = co_await sending;
    if (!taken)
        co_return;
    const QSet<QString> victims(paths.cbegin(), paths.cend());
    QStringList rest = _paths;
    rest.removeIf([&](const QString &path) { return victims.contains(path); });
    set(std::move(rest), _dismissed);
    setLastError(std::nullopt);
}

void OrphansStore::trashPaths(const QStringList &paths) {
    startTask(this, [self = QPointer(this), paths](std::stop_token) -> QCoro::Task<> {
        auto trashing = self->trash(paths);
        co_await trashing;
    });
}

void OrphansStore::setDismissed(bool dismissed) {
    if (std::exchange(_dismissed, dismissed) == dismissed)
        return;
    Q_EMIT dismissedChanged();
    tellHasOrphans();
}

void OrphansStore::set(QStringList paths, bool dismissed) {
    const bool areOthers = std::exchange(_paths, std::move(paths)) != _paths;
    const bool isOther = std::exchange(_dismissed, dismissed) != dismissed;
    _known = QSet<QString>(_paths.cbegin(), _paths.cend());
    if (areOthers)
        Q_EMIT pathsChanged();
    if (isOther)
        Q_EMIT dismissedChanged();
    tellHasOrphans();
}

void OrphansStore::tellHasOrphans() {
    const bool has = hasOrphans();
    if (std::exchange(_toldHasOrphans, has) != has)
        Q_EMIT hasOrphansChanged();
}

} // namespace zelk

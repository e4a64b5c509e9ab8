#include "State/OrphansStore.h"

#include "State/EitherShape.h"

#include <QPointer>
#include <QSet>

#include <utility>

namespace zelk {

namespace {

struct OrphansResult {
    QStringList paths;
};
ZELK_JSON_FIELDS(OrphansResult, paths)

} // namespace

OrphansStore::OrphansStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : EngineStore(std::move(client), parent) {}

void OrphansStore::accumulate(const QStringList &paths) {
    QStringList all = _paths;
    QSet<QString> known(all.cbegin(), all.cend());
    for (const QString &path : paths) {
        if (known.contains(path))
            continue;
        known.insert(path);
        all.append(path);
    }
    // Who pressed Keep isn't asked again in the same run.
    set(std::move(all), _dismissed);
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
    set(_paths, dismissed);
}

void OrphansStore::set(QStringList paths, bool dismissed) {
    const bool hadOrphans = hasOrphans();
    const bool areOthers = std::exchange(_paths, std::move(paths)) != _paths;
    const bool isOther = std::exchange(_dismissed, dismissed) != dismissed;
    if (areOthers)
        Q_EMIT pathsChanged();
    if (isOther)
        Q_EMIT dismissedChanged();
    if (hadOrphans != hasOrphans())
        Q_EMIT hasOrphansChanged();
}

} // namespace zelk

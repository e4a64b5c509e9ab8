#include "State/DiagnosticsStore.h"

#include "State/EitherShape.h"

#include <utility>

namespace zelk {

DiagnosticsStore::DiagnosticsStore(std::shared_ptr<HelperClienting> client, int logCapacity, QObject *parent)
    : EngineStore(std::move(client), parent), _logCapacity(logCapacity) {}

void DiagnosticsStore::appendLog(ServerEvent::LogLevel level, const QString &message) {
    _logs.push_back({QUuid::createUuid(), level, message, QDateTime::currentDateTime()});
    while (_logs.size() > static_cast<std::size_t>(_logCapacity))
        _logs.pop_front();
    Q_EMIT logsChanged();
}

QCoro::Task<> DiagnosticsStore::runDoctor() {
    const QPointer<DiagnosticsStore> self(this);
    setRunning(true);
    auto asking = orLastError(requestInEitherShape(client(), Request::runDoctor(), &DoctorResult::checks, lifetime()));
    auto checks = co_await asking;
    if (!self)
        co_return;
    if (checks) {
        setChecks(std::move(*checks));
        setLastError(std::nullopt);
    }
    setRunning(false);
}

QCoro::Task<> DiagnosticsStore::fix(QString checkId) {
    auto sending = sendOrLastError(Request::doctorFix(std::move(checkId)));
    const bool taken = co_await sending;
    if (!taken)
        co_return;
    auto looking = runDoctor();
    co_await looking;
}

void DiagnosticsStore::setChecks(std::vector<DoctorCheck> checks) {
    if (checks == _checks)
        return;
    _checks = std::move(checks);
    Q_EMIT checksChanged();
}

void DiagnosticsStore::setRunning(bool isRunning) {
    if (isRunning == _isRunning)
        return;
    _isRunning = isRunning;
    Q_EMIT isRunningChanged();
}

} // namespace zelk

#include "State/EngineStore.h"

#include <utility>

namespace zelk {

EngineStore::EngineStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : QObject(parent), _client(std::move(client)) {}

QCoro::Task<bool> EngineStore::sendOrLastError(Request request) {
    return orLastError(_client->send(std::move(request), HelperClienting::standardTimeout, lifetime()));
}

void EngineStore::setLastError(std::optional<QString> text) {
    if (text == _lastError)
        return;
    _lastError = std::move(text);
    Q_EMIT lastErrorChanged();
}

} // namespace zelk

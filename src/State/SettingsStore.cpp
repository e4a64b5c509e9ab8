#include "State/SettingsStore.h"

#include "State/EitherShape.h"

#include <QPointer>

#include <exception>
#include <utility>

namespace zelk {

namespace {

struct ConfigResult {
    SafeConfig config;
};
ZELK_JSON_FIELDS(ConfigResult, config)

} // namespace

SettingsStore::SettingsStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : QObject(parent), _client(std::move(client)) {}

std::optional<QString> SettingsStore::effectiveSpotifyClientId() const {
    return _config ? _config->effectiveSpotifyClientId : std::nullopt;
}

QCoro::Task<> SettingsStore::refresh() {
    const QPointer<SettingsStore> self(this);
    SafeConfig config;
    std::exception_ptr failure;
    try {
        auto asking = requestInEitherShape(_client, Request::getConfig(), &ConfigResult::config, _lifetime.token());
        config = co_await asking;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (failure) {
        setLastError(describe(failure));
        co_return;
    }
    setConfig(std::move(config));
    setLastError(std::nullopt);
}

void SettingsStore::setConfig(SafeConfig config) {
    if (config == _config)
        return;
    _config = std::move(config);
    Q_EMIT configChanged();
}

void SettingsStore::setLastError(std::optional<QString> text) {
    if (text == _lastError)
        return;
    _lastError = std::move(text);
    Q_EMIT lastErrorChanged();
}

} // namespace zelk

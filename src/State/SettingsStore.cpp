#include "State/SettingsStore.h"

#include "State/EitherShape.h"

#include <exception>
#include <utility>

namespace zelk {

SettingsStore::SettingsStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : EngineStore(std::move(client), parent) {}

std::optional<QString> SettingsStore::effectiveSpotifyClientId() const {
    return _config ? _config->effectiveSpotifyClientId : std::nullopt;
}

QCoro::Task<> SettingsStore::refresh() {
    auto asking = orLastError(requestInEitherShape(client(), Request::getConfig(), &ConfigResult::config, lifetime()));
    auto config = co_await asking;
    if (!config)
        co_return;
    setConfig(std::move(*config));
    setLastError(std::nullopt);
}

QCoro::Task<> SettingsStore::apply(ConfigPatch patch) {
    return change(Request::setConfig(std::move(patch)));
}

QCoro::Task<> SettingsStore::setProxyEnabled(bool enabled) {
    ConfigPatch patch;
    patch.proxyEnabled = enabled;
    return apply(std::move(patch));
}

QCoro::Task<> SettingsStore::setProxySubscription(QString url) {
    return change(Request::storeAccountToken(AccountService::proxy, std::move(url)));
}

QCoro::Task<> SettingsStore::disconnectProxy() {
    return change(Request::disconnectAccount(AccountService::proxy));
}

QCoro::Task<> SettingsStore::change(Request request) {
    auto sending = sendOrLastError(std::move(request));
    const bool taken = co_await sending;
    if (!taken)
        co_return;
    auto refreshing = refresh();
    co_await refreshing;
}

QCoro::Task<std::optional<qint64>> SettingsStore::proxyNodeCount() {
    try {
        auto asking =
            client()->request<ProxyInfoResult>(Request::proxyInfo(), HelperClienting::standardTimeout, lifetime());
        const auto info = co_await asking;
        if (info.ok)
            co_return info.nodeCount;
    } catch (const std::exception &) {
        // No count is all that is shown of it.
    }
    co_return std::nullopt;
}

QCoro::Task<SettingsStore::ProxyTest> SettingsStore::testProxy() {
    ProxyTest test;
    try {
        auto asking =
            client()->request<TestProxyResult>(Request::testProxy(), HelperClienting::standardTimeout, lifetime());
        const auto result = co_await asking;
        test.ok = result.ok;
        test.detail = result.detail;
    } catch (const std::exception &failure) {
        test.detail = describe(failure);
    }
    co_return test;
}

void SettingsStore::setConfig(SafeConfig config) {
    if (config == _config)
        return;
    _config = std::move(config);
    Q_EMIT configChanged();
}

} // namespace zelk

#pragma once

#include "State/EngineStore.h"
#include "Transport/HelperProtocolConfig.h"

namespace zelk {

/// The application's copy of the engine's configuration: what the engine last reported, never what was hoped to be set.
/// Every change that the engine took is read back.
class SettingsStore final : public EngineStore {
    Q_OBJECT
    Q_PROPERTY(bool hasConfig READ hasConfig NOTIFY configChanged)
    Q_PROPERTY(bool appleMusicConnected READ appleMusicConnected NOTIFY configChanged)
    Q_PROPERTY(bool spotifyConnected READ spotifyConnected NOTIFY configChanged)
    Q_PROPERTY(bool soundcloudConnected READ soundcloudConnected NOTIFY configChanged)
    Q_PROPERTY(bool acoustidConfigured READ acoustidConfigured NOTIFY configChanged)
    Q_PROPERTY(bool proxyConfigured READ proxyConfigured NOTIFY configChanged)
    Q_PROPERTY(bool proxyEnabled READ proxyEnabled NOTIFY configChanged)

public:
    /// What a test of the tunnel found, in words if there are any.
    struct ProxyTest {
        bool ok = false;
        std::optional<QString> detail;
        bool operator==(const ProxyTest &) const = default;
    };

    explicit SettingsStore(std::shared_ptr<HelperClienting> client, QObject *parent = nullptr);

    const std::optional<SafeConfig> &config() const { return _config; }

    // Of the configuration; false, and absent, while there is none.
    bool appleMusicConnected() const { return _config && _config->appleMusicConnected; }
    bool spotifyConnected() const { return _config && _config->spotifyConnected; }
    bool soundcloudConnected() const { return _config && _config->soundcloudConnected; }
    bool acoustidConfigured() const { return _config && _config->acoustidConfigured; }
    std::optional<QString> effectiveSpotifyClientId() const;
    bool proxyConfigured() const { return _config && _config->proxy.configured; }
    bool proxyEnabled() const { return _config && _config->proxy.enabled; }

    // A failure of these goes to `lastError`, and the configuration stays as it was: what the user changed shows its
    // old value again.
    /// Reads the configuration.
    QCoro::Task<> refresh();
    QCoro::Task<> apply(ConfigPatch patch);
    QCoro::Task<> setProxyEnabled(bool enabled);
    /// Stores the subscription's link, which is the token of the account `proxy`.
    QCoro::Task<> setProxySubscription(QString url);
    QCoro::Task<> disconnectProxy();

    // These leave `lastError` alone.
    /// How many nodes the subscription has; none if it has no say, or on any failure.
    QCoro::Task<std::optional<qint64>> proxyNodeCount();
    QCoro::Task<ProxyTest> testProxy();

Q_SIGNALS:
    void configChanged();

private:
    bool hasConfig() const { return _config.has_value(); }
    void setConfig(SafeConfig config);
    /// Sends what changes the configuration, and reads it back if the engine took it.
    QCoro::Task<> change(Request request);

    std::optional<SafeConfig> _config;
};

} // namespace zelk

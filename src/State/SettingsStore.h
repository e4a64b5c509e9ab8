#pragma once

#include "Support/Task.h"
#include "Transport/HelperClienting.h"
#include "Transport/HelperProtocolConfig.h"

#include <QObject>

#include <memory>
#include <optional>

namespace zelk {

/// The application's copy of the engine's configuration: what the engine last reported, never what was hoped to be set.
class SettingsStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasConfig READ hasConfig NOTIFY configChanged)
    Q_PROPERTY(bool appleMusicConnected READ appleMusicConnected NOTIFY configChanged)
    Q_PROPERTY(bool spotifyConnected READ spotifyConnected NOTIFY configChanged)
    Q_PROPERTY(bool soundcloudConnected READ soundcloudConnected NOTIFY configChanged)
    Q_PROPERTY(bool acoustidConfigured READ acoustidConfigured NOTIFY configChanged)
    Q_PROPERTY(bool proxyConfigured READ proxyConfigured NOTIFY configChanged)
    Q_PROPERTY(bool proxyEnabled READ proxyEnabled NOTIFY configChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY lastErrorChanged)

public:
    explicit SettingsStore(std::shared_ptr<HelperClienting> client, QObject *parent = nullptr);

    const std::optional<SafeConfig> &config() const { return _config; }
    const std::optional<QString> &lastError() const { return _lastError; }

    // Of the configuration; false, and absent, while there is none.
    bool appleMusicConnected() const { return _config && _config->appleMusicConnected; }
    bool spotifyConnected() const { return _config && _config->spotifyConnected; }
    bool soundcloudConnected() const { return _config && _config->soundcloudConnected; }
    bool acoustidConfigured() const { return _config && _config->acoustidConfigured; }
    std::optional<QString> effectiveSpotifyClientId() const;
    bool proxyConfigured() const { return _config && _config->proxy.configured; }
    bool proxyEnabled() const { return _config && _config->proxy.enabled; }

    /// Reads the configuration. A failure goes to `lastError`; the old configuration then stays.
    QCoro::Task<> refresh();

Q_SIGNALS:
    void configChanged();
    void lastErrorChanged();

private:
    bool hasConfig() const { return _config.has_value(); }
    QString lastErrorText() const { return _lastError.value_or(QString()); }
    void setConfig(SafeConfig config);
    void setLastError(std::optional<QString> text);

    const std::shared_ptr<HelperClienting> _client;
    std::optional<SafeConfig> _config;
    std::optional<QString> _lastError;
    TaskScope _lifetime;
};

} // namespace zelk

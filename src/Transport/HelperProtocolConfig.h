#pragma once

#include "Transport/HelperProtocolCatalogue.h"

// The engine's configuration as the application sees it, and the records of tool provisioning.
namespace zelk {

// The configuration without its secrets: only flags say whether one is set. Each field that isn't optional is required:
// a reply that lacks one fails as a whole.
struct SafeConfig {
    struct Quality {
        QualityFloor floor{};
        bool losslessOnly = false;
        bool bestQuality = false;
        bool upgradeEnabled = false;
        bool operator==(const Quality &) const = default;
    };
    struct Run {
        qint64 searchCount = 0;
        qint64 concurrency = 0;
        double toleranceSec = 0;
        double searchTimeoutSec = 0;
        double cooloffHours = 0;
        bool operator==(const Run &) const = default;
    };
    enum class Theme : quint8 { dark, light };
    struct UI {
        Theme theme{};
        bool operator==(const UI &) const = default;
    };
    struct Identity {
        bool enabled = false;
        bool strict = false;
        bool operator==(const Identity &) const = default;
    };
    struct Proxy {
        bool enabled = false;
        bool configured = false;
        bool operator==(const Proxy &) const = default;
    };

    std::vector<SourceId> sources;
    Quality quality;
    Run run;
    UI ui;
    std::optional<QString> outputDir;
    Identity identity;
    Proxy proxy;
    bool spotifyConnected = false;
    bool soundcloudConnected = false;
    bool acoustidConfigured = false;
    bool appleMusicConnected = false;
    std::optional<QString> effectiveSpotifyClientId;
    bool operator==(const SafeConfig &) const = default;
};
ZELK_JSON_FIELDS(SafeConfig::Quality, floor, losslessOnly, bestQuality, upgradeEnabled)
ZELK_JSON_FIELDS(SafeConfig::Run, searchCount, concurrency, toleranceSec, searchTimeoutSec, cooloffHours)
ZELK_JSON_FIELDS(SafeConfig::UI, theme)
ZELK_JSON_FIELDS(SafeConfig::Identity, enabled, strict)
ZELK_JSON_FIELDS(SafeConfig::Proxy, enabled, configured)
ZELK_JSON_FIELDS(SafeConfig, sources, quality, run, ui, outputDir, identity, proxy, spotifyConnected,
                 soundcloudConnected, acoustidConfigured, appleMusicConnected, effectiveSpotifyClientId)

constexpr QLatin1StringView wireName(SafeConfig::Theme theme) {
    switch (theme) {
    case SafeConfig::Theme::dark:
        return QLatin1StringView("dark");
    case SafeConfig::Theme::light:
        return QLatin1StringView("light");
    }
    return {};
}

// What is to change: an absent field means no change. A nested record goes whole, `sources` is replaced whole in the
// order given, and `outputDir` can be set but not cleared. Secrets never travel here.
struct ConfigPatch {
    std::optional<std::vector<SourceId>> sources;
    std::optional<SafeConfig::Quality> quality;
    std::optional<SafeConfig::Run> run;
    std::optional<SafeConfig::UI> ui;
    std::optional<QString> outputDir;
    std::optional<SafeConfig::Identity> identity;
    std::optional<bool> proxyEnabled;
    bool operator==(const ConfigPatch &) const = default;
};
ZELK_JSON_FIELDS(ConfigPatch, sources, quality, run, ui, outputDir, identity, proxyEnabled)

// The steps of installing one tool.
enum class ToolPhase : quint8 { download, verify, install, done, error };

constexpr QLatin1StringView wireName(ToolPhase phase) {
    switch (phase) {
    case ToolPhase::download:
        return QLatin1StringView("download");
    case ToolPhase::verify:
        return QLatin1StringView("verify");
    case ToolPhase::install:
        return QLatin1StringView("install");
    case ToolPhase::done:
        return QLatin1StringView("done");
    case ToolPhase::error:
        return QLatin1StringView("error");
    }
    return {};
}

// The state of one tool after provisioning.
struct ToolStatusDTO {
    QString id;     // the tool's key, as in a toolProgress event
    QString name;   // display name
    QString status; // "ok" when the tool is ready
    QString detail; // what to show
    bool operator==(const ToolStatusDTO &) const = default;
};
ZELK_JSON_FIELDS(ToolStatusDTO, id, name, status, detail)

struct ProvisionToolsResult {
    bool ok = false;
    std::vector<ToolStatusDTO> tools;
    bool operator==(const ProvisionToolsResult &) const = default;
};
ZELK_JSON_FIELDS(ProvisionToolsResult, ok, tools)

} // namespace zelk

#pragma once

#include "Transport/HelperProtocolConfig.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace zelk::engine {

/// The engine's settings with their defaults, as one value that a run can keep while they change.
struct EngineConfig {
    std::vector<SourceId> sources{SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube};
    SafeConfig::Quality quality{QualityFloor::any, false, true, true};
    SafeConfig::Run run{5, 4, 5, 30, 24};
    SafeConfig::UI ui{SafeConfig::Theme::dark};
    SafeConfig::Identity identity{true, false};
    QString outputDir;          ///< As the user wrote it, perhaps with "~".
    QStringList playlistDirs;   ///< Absolute.
    QStringList collectionDirs; ///< Absolute.
    /// Whether an account's playlists are wanted: unset until its exports are first found or the user says so.
    std::optional<bool> spotifyConnected;
    std::optional<bool> appleMusicConnected;

    /// Whether the user has disconnected this source: its playlists are then nobody's to see or sync.
    bool hides(PlaylistSourceId source) const;

    bool operator==(const EngineConfig &) const = default;
};

/// What a patch asks for that no run could honour, naming the field; nothing if it is sound.
std::optional<QString> objectionTo(const ConfigPatch &patch);

} // namespace zelk::engine

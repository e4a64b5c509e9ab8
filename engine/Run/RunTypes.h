#pragma once

#include "Files/FileOps.h"
#include "Library/AudioLibrary.h"
#include "Matching/Matcher.h"
#include "Playlists/PlaylistCatalogue.h"
#include "Run/EventSink.h"
#include "Run/SourceFinder.h"
#include "Store/Database.h"
#include "Store/EngineConfig.h"

namespace zelk::engine {

/// What runs work with. All outlive them.
struct RunServices {
    Database &database;
    PlaylistCatalogue &playlists;
    AudioLibrary &library;
    EventSink &events;
    QString downloads; ///< The folder that downloads wait in; absolute.
    FileOps &files = FileOps::system();
    SourceFinder::Now now = [] { return std::chrono::steady_clock::now(); };
};

/// What a run is asked to do, with the settings as they were then.
struct RunRequest {
    QString runId;
    std::vector<PlaylistSelection> selection;
    SyncOptions options;
    EngineConfig config;
    QString outputDir; ///< Absolute.

    bool dryRun() const { return options.dryRun.value_or(false); }
    bool asksForReview() const { return options.review.value_or(true); }
    bool upgrades() const { return options.upgrade.value_or(config.quality.upgradeEnabled); }
    int concurrency() const;
    MatchPreferences preferences() const;
};

} // namespace zelk::engine

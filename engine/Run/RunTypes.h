#pragma once

#include "Files/FileOps.h"
#include "Library/AudioLibrary.h"
#include "Matching/Matcher.h"
#include "Playlists/PlaylistCatalogue.h"
#include "Run/EventSink.h"
#include "Store/Database.h"
#include "Store/EngineConfig.h"

namespace zelk::engine {

/// What runs work with. All outlive them.
struct RunServices {
    Database &database;
    PlaylistCatalogue &playlists;
    AudioLibrary &library;
    EventSink &events;
    FileOps &files = FileOps::system();
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
    int concurrency() const;
    MatchPreferences preferences() const;
};

} // namespace zelk::engine

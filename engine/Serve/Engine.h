#pragma once

#include "Run/RunController.h"
#include "Serve/Doctor.h"
#include "Serve/MethodError.h"
#include "Store/ConfigStore.h"
#include "Store/EnginePaths.h"
#include "Store/RowMemory.h"
#include "Store/RunLock.h"
#include "Store/SecretStore.h"

#include <chrono>
#include <functional>
#include <memory>

namespace zelk::engine {

/// A recording that waits for the user's decision.
struct WaitingReview {
    PendingReview review;
    QString playlist; ///< The first that holds it, by name.
};

/// All that the engine can do, behind functions that the protocol's methods and the command line share. Each throws
/// MethodError where it refuses; other exceptions are failures of the machine. Any thread may call. Those that are said
/// to wait may take seconds.
class Engine {
public:
    Engine(EnginePaths paths, EventSink &events);

    // Settings and accounts
    SafeConfig safeConfig() const;
    EngineConfig config() const { return _config.current(); }
    QString outputDir() const { return _paths.expanded(_config.current().outputDir); } ///< Absolute.
    void setConfig(const ConfigPatch &patch);
    void storeAccountToken(AccountService service, const QString &token, const std::optional<QString> &clientId);
    void disconnectAccount(AccountService service);
    void connectSpotify(); ///< Waits.

    // Playlists; all wait
    /// For a request that has already waited for so long to be taken up.
    std::vector<PlaylistDTO> listPlaylists(std::optional<PlaylistSourceId> source,
                                           std::chrono::milliseconds waited = {});
    std::vector<PreviewTrackDTO> playlistTracks(PlaylistSourceId source, const QString &id);
    QStringList listOrphans(const std::vector<PlaylistSelection> &selection);
    void trashOrphans(const QStringList &named);

    // Runs
    /// `accepted` is called before anything of the run can be heard.
    void startSync(const std::vector<PlaylistSelection> &selection, const std::optional<SyncOptions> &options,
                   const std::function<void()> &accepted);
    void cancelSync(const std::optional<QString> &runId) { _runs->cancel(runId); }
    void reviewDecision(const QString &trackId, const ReviewDecision &decision,
                        const std::optional<QString> &runId = {});
    /// The recordings that wait for a decision, in the order of their playlists. Waits.
    std::vector<WaitingReview> waitingReviews();
    /// Lets everything under way stop at its next safe point.
    void stopRuns() { _runs->stop(); }

    // Diagnosis; all wait
    std::vector<DoctorCheck> runDoctor();
    void doctorFix(const QString &checkId);
    ProvisionToolsResult provisionTools();

private:
    QString downloads() const;
    void warn(const QString &message);
    /// Sets the stored flag of the account's playlists, if it has any, and its secrets: both or none.
    void changeAccount(AccountService service, bool connected, const std::function<void()> &changeSecrets);
    void noteSources(const PlaylistSnapshot &snapshot);
    DoctorSubject doctorSubject();
    RunLock::Hold lock();

    const EnginePaths _paths;
    EventSink &_events;
    ConfigStore _config;
    SecretStore _secrets;
    Database _database;
    RowMemory _rows; // the scan's thread alone
    RunLock _lock;
    PlaylistCatalogue _playlists;
    AudioLibrary _library;
    std::unique_ptr<RunController> _runs; // last, so that runs end before what they use
};

} // namespace zelk::engine

#pragma once

#include "App/SetupCoordinator.h"
#include "App/SignIns.h"
#include "Platform/UserDefaults.h"
#include "Services/AutomationPermissionMonitor.h"
#include "Services/SignInModel.h"
#include "State/CLIToolStore.h"
#include "State/DiagnosticsStore.h"
#include "State/LibraryStore.h"
#include "State/OrphansStore.h"
#include "State/PreviewStore.h"
#include "State/SettingsStore.h"
#include "State/SyncStore.h"
#include "State/ToolProvisioningStore.h"
#include "Support/Clock.h"
#include "Support/Logger.h"
#include "Support/Task.h"
#include "Transport/HelperClienting.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace zelk {

/// The top of the application's state: owns the engine's client and every store, carries the engine's events into the
/// stores, and holds the commands that the user's gestures start. The stores that talk to the engine exist from the
/// moment a client does, and then for good: whoever sees one may use it.
class AppModel final : public QObject, public SignInModel {
    Q_OBJECT
    Q_PROPERTY(zelk::SyncStore *sync READ sync CONSTANT)
    Q_PROPERTY(zelk::CLIToolStore *cliTool READ cliTool CONSTANT)
    Q_PROPERTY(zelk::AutomationPermissionMonitor *automationPermission READ automationPermission CONSTANT)
    Q_PROPERTY(zelk::LibraryStore *library READ library NOTIFY libraryChanged)
    Q_PROPERTY(zelk::PreviewStore *preview READ preview NOTIFY previewChanged)
    Q_PROPERTY(zelk::SettingsStore *settings READ settings NOTIFY settingsChanged)
    Q_PROPERTY(zelk::DiagnosticsStore *diagnostics READ diagnostics NOTIFY diagnosticsChanged)
    Q_PROPERTY(zelk::OrphansStore *orphans READ orphans NOTIFY orphansChanged)
    Q_PROPERTY(zelk::ToolProvisioningStore *toolProvisioning READ toolProvisioning NOTIFY toolProvisioningChanged)
    /// There while the setup is up.
    Q_PROPERTY(zelk::SetupCoordinator *setupCoordinator READ setupCoordinator NOTIFY setupCoordinatorChanged)
    /// What the main window shows when the engine could not be brought up; empty otherwise.
    Q_PROPERTY(QString startupError READ startupErrorText NOTIFY startupErrorChanged)
    /// The engine has answered, or said that it is ready. Never taken back.
    Q_PROPERTY(bool isReady READ isReady NOTIFY isReadyChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString focusedReviewTrackId READ focusedReviewTrackIdText NOTIFY focusedReviewTrackIdChanged)
    Q_PROPERTY(zelk::TrackModel *resolvedFocusedReview READ resolvedFocusedReview NOTIFY resolvedFocusedReviewChanged)
    Q_PROPERTY(bool isInspectorPresented READ isInspectorPresented WRITE setInspectorPresented NOTIFY
                   isInspectorPresentedChanged)
    Q_PROPERTY(bool isOnboardingPresented READ isOnboardingPresented WRITE setOnboardingPresented NOTIFY
                   isOnboardingPresentedChanged)

public:
    /// A client, and what launches the engine behind it.
    struct Engine {
        std::shared_ptr<HelperClienting> client;
        std::function<QCoro::Task<>()> start;
    };
    /// Makes the engine's client; throws `HelperError::helperMissing` when there is no engine to be found.
    using Launcher = std::function<Engine()>;

    /// What the model needs of the machine that it runs on.
    struct Surroundings {
        std::shared_ptr<Clock> clock;
        std::shared_ptr<UserDefaults> defaults;
        CLIToolPlaces toolPlaces;
        CLIToolStore::PreferredTarget toolTarget;
        std::shared_ptr<AutomationPermissionMonitor> automationPermission;
    };

    /// A model without a client, until start().
    AppModel(Launcher launcher, Surroundings surroundings, QObject *parent = nullptr);
    /// A model over that client, which is taken as running.
    AppModel(std::shared_ptr<HelperClienting> client, Surroundings surroundings, QObject *parent = nullptr);
    ~AppModel() override;

    /// Brings up the engine and loads what the main window needs first. Does nothing once there is a client. Never
    /// throws: a failure shows in `startupError`, and a launch that failed stays failed.
    QCoro::Task<> start();
    /// Routes no more events.
    void shutdown();

    const std::shared_ptr<HelperClienting> &client() const { return _client; }
    SyncStore *sync() const override { return _sync; }
    CLIToolStore *cliTool() const { return _cliTool; }
    AutomationPermissionMonitor *automationPermission() const { return _surroundings.automationPermission.get(); }
    SignIns *signIns() const { return _signIns; }
    LibraryStore *library() const { return _library; }
    PreviewStore *preview() const { return _preview; }
    SettingsStore *settings() const override { return _settings; }
    DiagnosticsStore *diagnostics() const { return _diagnostics; }
    OrphansStore *orphans() const { return _orphans; }
    ToolProvisioningStore *toolProvisioning() const { return _toolProvisioning; }
    SetupCoordinator *setupCoordinator() const { return _setupCoordinator; }
    const std::optional<QString> &startupError() const { return _startupError; }
    bool isReady() const { return _isReady; }
    const std::optional<QString> &focusedReviewTrackId() const { return _focusedReviewTrackId; }
    void setFocusedReviewTrackId(std::optional<QString> trackId);
    bool isInspectorPresented() const { return _isInspectorPresented; }
    void setInspectorPresented(bool isPresented);
    bool isOnboardingPresented() const { return _isOnboardingPresented; }
    void setOnboardingPresented(bool isPresented);

    /// To be called after each change of the library's selection: shows its preview, unless a run is going on.
    Q_INVOKABLE void selectionChanged();
    Q_INVOKABLE void startSync();
    Q_INVOKABLE void cancelSync();

    /// Sends the user's decision. The row stays as it is until the engine's next event for it.
    void submitReview(const QString &trackId, const ReviewDecision &decision);
    Q_INVOKABLE void focusReview(const QString &trackId);
    /// The focused row, as long as it awaits review; null otherwise.
    TrackModel *resolvedFocusedReview() const;
    Q_INVOKABLE void openReview();
    /// Moves the focus by that many rows of the review queue, round its ends. `delta` is -1 or 1.
    Q_INVOKABLE void stepReview(int delta);
    /// A retry of one track is a sync of the whole selection.
    Q_INVOKABLE void retryTrack(const QString &trackId);
    Q_INVOKABLE void skipTrack(const QString &trackId);

    /// Gives the engine a token to keep. The configuration is not read again: that is for the caller to decide. Throws
    /// `HelperError`, `helperUnavailable` without a client.
    QCoro::Task<> storeAccountToken(AccountService service, QString token,
                                    std::optional<QString> clientId = {}) override;
    /// Has the engine forget an account, and reads the configuration again. Throws as above.
    QCoro::Task<> disconnectAccount(AccountService service);
    /// Has the engine connect a Spotify account, five minutes at most while the user works in the browser; then reads
    /// the configuration and the playlists again. A failure shows in the banner; without a client nothing happens.
    QCoro::Task<> connectSpotify() override;
    /// What the engine authorizes with at Spotify. Throws `HelperError`, `helperUnavailable` without a client.
    template<typename T>
    QCoro::Task<T> requestSpotifyAuthParams() {
        if (!_client)
            throw HelperError::helperUnavailable();
        auto asking =
            _client->request<T>(Request::getSpotifyAuthParams(), HelperClienting::standardTimeout, _lifetime.token());
        co_return co_await asking;
    }

    /// Opens the setup, once there is a configuration to start from or none to be had. Without a mode it is a re-run
    /// for whoever has been through it before.
    void beginOnboarding(std::optional<SetupCoordinator::Mode> mode = {});
    /// Closes the setup and loads again what it may have changed.
    Q_INVOKABLE void finishOnboarding();

Q_SIGNALS:
    void clientChanged();
    void libraryChanged();
    void previewChanged();
    void settingsChanged();
    void diagnosticsChanged();
    void orphansChanged();
    void toolProvisioningChanged();
    void setupCoordinatorChanged();
    void startupErrorChanged();
    void isReadyChanged();
    void focusedReviewTrackIdChanged();
    /// The focused row may be another one, or no longer await review.
    void resolvedFocusedReviewChanged();
    void isInspectorPresentedChanged();
    void isOnboardingPresentedChanged();

private:
    void attach(std::shared_ptr<HelperClienting> client);
    void startBridge();
    void route(const HelperEvent &event);
    void routeServer(const ServerEvent &event);
    /// Loads what the main window needs first, and again when an account has changed: the configuration, then the
    /// playlists.
    QCoro::Task<> initialFetch();
    void refreshSettings();
    void setSetupCoordinator(SetupCoordinator *coordinator);
    void failStartup(const std::exception_ptr &failure);
    void setReady();
    /// Sends, on the next turn, what is to be said of the run as it then is. A failure leaves no trace.
    void notifyLater(std::function<Request(const SyncStore &)> requestNow);
    void followFocusedReview();
    void tellResolvedFocusedReview();
    QString startupErrorText() const { return _startupError.value_or(QString()); }
    QString focusedReviewTrackIdText() const { return _focusedReviewTrackId.value_or(QString()); }

    const Logger _logger{"app"};
    const Launcher _launcher;
    const Surroundings _surroundings;
    std::shared_ptr<HelperClienting> _client;
    TaskHandle _bridgeTask;
    SyncStore *_sync;
    CLIToolStore *_cliTool;
    SignIns *_signIns;
    LibraryStore *_library = nullptr;
    PreviewStore *_preview = nullptr;
    SettingsStore *_settings = nullptr;
    DiagnosticsStore *_diagnostics = nullptr;
    OrphansStore *_orphans = nullptr;
    ToolProvisioningStore *_toolProvisioning = nullptr;
    SetupCoordinator *_setupCoordinator = nullptr;
    std::optional<QString> _startupError;
    bool _isReady = false;
    std::optional<QString> _focusedReviewTrackId;
    const TrackModel *_toldResolved = nullptr; // only to be compared: null as soon as its rows are replaced
    bool _isInspectorPresented = false;
    bool _isOnboardingPresented = false;
    TaskScope _lifetime;
};

} // namespace zelk

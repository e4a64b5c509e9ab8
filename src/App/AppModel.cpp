#include "App/AppModel.h"

#include <QPointer>

#include <exception>
#include <utility>

namespace zelk {

namespace {

/// The pause before the preview of a selection is fetched.
constexpr std::chrono::milliseconds previewDebounce{250};

/// Shows the selection's preview where neither rows of a run nor of a preview stand, when a new list may hold what was
/// selected all along.
void previewWhereNothingShows(AppModel &model) {
    PreviewStore *const preview = model.preview();
    if (!preview || model.sync()->isRunning() || !model.sync()->groups()->isEmpty() || preview->isLoading() ||
        preview->trackCount() > 0)
        return;
    // A playlist that couldn't be read is asked for again.
    if (!preview->groups()->isEmpty())
        preview->clear();
    model.selectionChanged();
}

} // namespace

AppModel::AppModel(Launcher launcher, Surroundings surroundings, QObject *parent)
    : QObject(parent), _launcher(std::move(launcher)), _surroundings(std::move(surroundings)),
      _sync(new SyncStore(this)), _cliTool(new CLIToolStore(_surroundings.toolPlaces, _surroundings.toolTarget, this)),
      _signIns(new SignIns(this)) {
    followFocusedReview();
}

AppModel::AppModel(std::shared_ptr<HelperClienting> client, Surroundings surroundings, QObject *parent)
    : AppModel(Launcher(), std::move(surroundings), parent) {
    attach(std::move(client));
}

AppModel::~AppModel() = default;

QCoro::Task<> AppModel::start() {
    if (_client)
        co_return;
    const QPointer<AppModel> self(this);
    Engine engine;
    std::exception_ptr failure;
    try {
        engine = _launcher();
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        failStartup(failure);
        co_return;
    }
    // The bridge listens before the engine runs: no event of its first moments is lost.
    attach(std::move(engine.client));
    try {
        auto launching = engine.start();
        co_await launching;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (failure) {
        failStartup(failure);
        co_return;
    }
    setReady();
    auto fetching = initialFetch();
    co_await fetching;
}

void AppModel::shutdown() {
    _bridgeTask.cancel();
}

void AppModel::attach(std::shared_ptr<HelperClienting> client) {
    _client = std::move(client);
    Q_EMIT clientChanged();
    _library = new LibraryStore(_client, this);
    connect(_library, &LibraryStore::loadStateChanged, this, [this] {
        if (_library->loadState() == LoadState::loaded())
            previewWhereNothingShows(*this);
    });
    Q_EMIT libraryChanged();
    _preview = new PreviewStore(_client, _surroundings.clock, previewDebounce, this);
    Q_EMIT previewChanged();
    _settings = new SettingsStore(_client, this);
    Q_EMIT settingsChanged();
    _diagnostics = new DiagnosticsStore(_client, DiagnosticsStore::defaultLogCapacity, this);
    Q_EMIT diagnosticsChanged();
    _orphans = new OrphansStore(_client, this);
    Q_EMIT orphansChanged();
    _toolProvisioning = new ToolProvisioningStore(_client, this);
    Q_EMIT toolProvisioningChanged();
    _cliTool->detect();
    startBridge();
}

void AppModel::startBridge() {
    _bridgeTask.cancel();
    // Only the reading end: the bridge must not keep the client alive whose stream it waits on.
    _bridgeTask =
        startTask(this, [self = QPointer(this), events = _client->events()](std::stop_token stop) -> QCoro::Task<> {
            while (true) {
                const auto event = co_await events.next(stop);
                if (!event)
                    break;
                if (self)
                    self->route(*event);
            }
        });
}

void AppModel::route(const HelperEvent &event) {
    // First, so that whatever is asked below sees the run's new state.
    _sync->route(event);
    match(
        event, [this](const HelperEvent::Server &server) { routeServer(server.event); },
        [](const HelperEvent::HelperCrashed &) {}, [this](const HelperEvent::HelperReady &) { setReady(); });
}

void AppModel::routeServer(const ServerEvent &event) {
    match(
        event,
        [this](const ServerEvent::OrphansFound &found) {
            if (_orphans)
                _orphans->accumulate(found.paths);
        },
        [this](const ServerEvent::Error &error) {
            if (error.code == wireName(EngineErrorCode::spotifyAuthExpired))
                refreshSettings();
        },
        [this](const ServerEvent::Log &log) {
            if (_diagnostics)
                _diagnostics->appendLog(log.level, log.message);
            if (_toolProvisioning)
                _toolProvisioning->note(log.message);
        },
        [this](const ServerEvent::ToolProgress &progress) {
            if (_toolProvisioning)
                _toolProvisioning->apply(progress.tool, progress.phase, progress.percent, progress.detail);
        },
        // The run's own.
        [](const ServerEvent::SyncStarted &) {}, [](const ServerEvent::PlaylistStarted &) {},
        [](const ServerEvent::TrackStarted &) {}, [](const ServerEvent::DiskCheck &) {},
        [](const ServerEvent::Step &) {}, [](const ServerEvent::DownloadProgress &) {},
        [](const ServerEvent::NeedsReview &) {}, [](const ServerEvent::TrackFinished &) {},
        [](const ServerEvent::PlaylistFinished &) {}, [](const ServerEvent::SyncDone &) {},
        [](const ServerEvent::ProxyStatus &) {}, [](const ServerEvent::Unknown &) {});
}

void AppModel::refreshSettings() {
    if (!_settings)
        return;
    startTask(this, [settings = QPointer(_settings)](std::stop_token) -> QCoro::Task<> {
        auto refreshing = settings->refresh();
        co_await refreshing;
    });
}

QCoro::Task<> AppModel::initialFetch() {
    const QPointer<AppModel> self(this);
    if (_settings) {
        auto configuring = _settings->refresh();
        co_await configuring;
        if (!self)
            co_return;
    }
    if (_library) {
        auto listing = _library->refresh();
        co_await listing;
    }
}

void AppModel::failStartup(const std::exception_ptr &failure) {
    const QString text = describe(failure);
    if (_startupError != text) {
        _startupError = text;
        Q_EMIT startupErrorChanged();
    }
    _logger.error(QStringLiteral("startup failed: %1").arg(logText(failure)));
}

void AppModel::setReady() {
    if (_isReady)
        return;
    _isReady = true;
    Q_EMIT isReadyChanged();
}

void AppModel::setInspectorPresented(bool isPresented) {
    if (isPresented == _isInspectorPresented)
        return;
    _isInspectorPresented = isPresented;
    Q_EMIT isInspectorPresentedChanged();
}

void AppModel::setOnboardingPresented(bool isPresented) {
    if (isPresented == _isOnboardingPresented)
        return;
    _isOnboardingPresented = isPresented;
    Q_EMIT isOnboardingPresentedChanged();
    // What was typed into a setup that is closed goes with it, but for what is being stored right now.
    if (!isPresented && _setupCoordinator && !_setupCoordinator->isCommitting())
        setSetupCoordinator(nullptr);
}

} // namespace zelk

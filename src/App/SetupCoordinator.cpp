#include "App/SetupCoordinator.h"

#include "App/AppModel.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace zelk {

namespace {

using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

std::vector<Screen> screensOf(Mode mode) {
    std::vector<Screen> screens{Screen::welcome,         Screen::prepareTools, Screen::connectMusic,
                                Screen::downloadSources, Screen::fineTuning,   Screen::finish};
    if (mode == Mode::reRun)
        screens.erase(screens.begin());
    return screens;
}

} // namespace

SetupCoordinator::SetupCoordinator(Mode mode, AppModel *model, const std::optional<SafeConfig> &config, QObject *parent)
    : QObject(parent), _mode(mode), _model(model), _screenOrder(screensOf(mode)), _currentScreen(_screenOrder.front()) {
    if (config) {
        _selectedSources = config->sources;
        _qualityProfile = *qualityProfileFrom(config->quality);
        _identityEnabled = config->identity.enabled;
        _identityStrict = config->identity.strict;
        _outputDir = config->outputDir.value_or(_outputDir);
        _uiTheme = config->ui.theme;
    }
    if (_model) {
        connect(_model, &AppModel::toolProvisioningChanged, this, [this] {
            followTools();
            Q_EMIT canAdvancePastToolsChanged();
        });
        followTools();
    }
}

void SetupCoordinator::followTools() {
    if (auto *tools = _model->toolProvisioning())
        connect(tools, &ToolProvisioningStore::phaseChanged, this, &SetupCoordinator::canAdvancePastToolsChanged);
}

int SetupCoordinator::currentIndex() const {
    const auto found = std::ranges::find(_screenOrder, _currentScreen);
    return found == _screenOrder.end() ? 0 : static_cast<int>(found - _screenOrder.begin());
}

bool SetupCoordinator::canAdvancePastTools() const {
    const auto *tools = _model ? _model->toolProvisioning() : nullptr;
    return tools && tools->isReady();
}

bool SetupCoordinator::hasNoSource() const {
    if (!_model)
        return true;
    const auto *settings = _model->settings();
    const bool isConnected = settings && (settings->spotifyConnected() || settings->appleMusicConnected());
    const bool hasLocalAccess = _model->automationPermission()->status() == ConsentStatus::authorized;
    return !isConnected && !hasLocalAccess;
}

void SetupCoordinator::advance() {
    go(currentIndex() + 1);
}

void SetupCoordinator::back() {
    go(currentIndex() - 1);
}

void SetupCoordinator::goToConnectMusic() {
    const auto found = std::ranges::find(_screenOrder, Screen::connectMusic);
    if (found != _screenOrder.end())
        go(static_cast<int>(found - _screenOrder.begin()));
}

void SetupCoordinator::go(int index) {
    if (index >= 0 && index < stepCount())
        assign(_currentScreen, _screenOrder[static_cast<std::size_t>(index)], &SetupCoordinator::currentScreenChanged);
}

ConfigPatch SetupCoordinator::patch() const {
    // The settings of the run and the tunnel's switch are none of the setup's.
    ConfigPatch patch;
    patch.sources = _selectedSources;
    patch.quality = toQuality(_qualityProfile);
    patch.ui = SafeConfig::UI{_uiTheme};
    patch.outputDir = _outputDir;
    patch.identity = SafeConfig::Identity{_identityEnabled, _identityStrict};
    return patch;
}

QCoro::Task<> SetupCoordinator::commit() {
    const QPointer<SetupCoordinator> self(this);
    assign(_isCommitting, true, &SetupCoordinator::isCommittingChanged);
    assign(_lastError, {}, &SetupCoordinator::lastErrorChanged);
    if (_model && _model->settings()) {
        auto applying = _model->settings()->apply(patch());
        co_await applying;
        if (!self)
            co_return;
    }
    auto storing = storeSecret(AccountService::soundcloud, _soundcloudToken);
    co_await storing;
    if (!self)
        co_return;
    storing = storeSecret(AccountService::acoustid, _acoustidKey);
    co_await storing;
    if (!self)
        co_return;
    storing = storeSecret(AccountService::proxy, _proxySubscription);
    co_await storing;
    if (!self)
        co_return;
    if (_model && _model->settings() && _model->settings()->lastError())
        assign(_lastError, _model->settings()->lastError(), &SetupCoordinator::lastErrorChanged);
    assign(_isCommitting, false, &SetupCoordinator::isCommittingChanged);
}

QCoro::Task<> SetupCoordinator::storeSecret(AccountService service, QString secret) {
    const QString trimmed = secret.trimmed();
    if (trimmed.isEmpty() || !_model)
        co_return;
    try {
        auto storing = _model->storeAccountToken(service, trimmed);
        co_await storing;
    } catch (const std::exception &) {
        // A bad optional secret must not hold the user back on the last screen.
    }
}

void SetupCoordinator::attemptFinish() {
    if (_mode == Mode::firstRun && hasNoSource() && !_dismissedSourceWarning)
        Q_EMIT sourceWarningNeeded();
    else
        startFinish();
}

void SetupCoordinator::continueAnyway() {
    _dismissedSourceWarning = true;
    startFinish();
}

void SetupCoordinator::startFinish() {
    startTask(this, [self = QPointer(this)](std::stop_token) { return self->finish(); });
}

QCoro::Task<> SetupCoordinator::finish() {
    const QPointer<SetupCoordinator> self(this);
    auto committing = commit();
    co_await committing;
    if (self && !_lastError && _model)
        _model->finishOnboarding();
}

template<typename T>
void SetupCoordinator::assign(T &member, T value, void (SetupCoordinator::*changed)()) {
    if (value == member)
        return;
    member = std::move(value);
    Q_EMIT(this->*changed)();
}

void SetupCoordinator::setSelectedSources(std::vector<SourceId> sources) {
    assign(_selectedSources, std::move(sources), &SetupCoordinator::selectedSourcesChanged);
}
void SetupCoordinator::setQualityProfile(QualityProfile profile) {
    assign(_qualityProfile, profile, &SetupCoordinator::qualityProfileChanged);
}
void SetupCoordinator::setIdentityEnabled(bool enabled) {
    assign(_identityEnabled, enabled, &SetupCoordinator::identityEnabledChanged);
}
void SetupCoordinator::setIdentityStrict(bool strict) {
    assign(_identityStrict, strict, &SetupCoordinator::identityStrictChanged);
}
void SetupCoordinator::setOutputDir(const QString &folder) {
    assign(_outputDir, folder, &SetupCoordinator::outputDirChanged);
}
void SetupCoordinator::setSoundcloudToken(const QString &token) {
    assign(_soundcloudToken, token, &SetupCoordinator::soundcloudTokenChanged);
}
void SetupCoordinator::setAcoustidKey(const QString &key) {
    assign(_acoustidKey, key, &SetupCoordinator::acoustidKeyChanged);
}
void SetupCoordinator::setProxySubscription(const QString &url) {
    assign(_proxySubscription, url, &SetupCoordinator::proxySubscriptionChanged);
}

} // namespace zelk

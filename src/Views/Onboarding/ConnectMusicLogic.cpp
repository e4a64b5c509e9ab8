#include "Views/Onboarding/ConnectMusicLogic.h"

#include "Services/AppleMusicLocalAccess.h"

namespace zelk {

namespace {

ConnectMusicLogic::Control controlOf(bool isConnected, bool isConnecting) {
    if (isConnected)
        return ConnectMusicLogic::Connected;
    return isConnecting ? ConnectMusicLogic::Connecting : ConnectMusicLogic::Connect;
}

QCoro::Task<> readSettings(AppModel &model) {
    if (!model.settings())
        co_return;
    auto refreshing = model.settings()->refresh();
    co_await refreshing;
}

} // namespace

ConnectMusicLogic::ConnectMusicLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(&m_model, &AppModel::settingsChanged, this, &ConnectMusicLogic::attach);
    connect(m_model.automationPermission(), &AutomationPermissionMonitor::statusChanged, this,
            &ConnectMusicLogic::changed);
    connect(m_model.signIns(), &SignIns::ended, this, &ConnectMusicLogic::end);
    attach();
}

void ConnectMusicLogic::attach() {
    if (const auto *settings = m_model.settings())
        connect(settings, &SettingsStore::configChanged, this, &ConnectMusicLogic::changed);
    Q_EMIT changed();
}

ConnectMusicLogic::Control ConnectMusicLogic::appleMusic() const {
    const auto *settings = m_model.settings();
    return controlOf(settings && settings->appleMusicConnected(), m_connectingApple);
}

ConnectMusicLogic::Control ConnectMusicLogic::spotify() const {
    const auto *settings = m_model.settings();
    return controlOf(settings && settings->spotifyConnected(), m_connectingSpotify);
}

QString ConnectMusicLogic::spotifySubtitle() const {
    return m_connectingSpotify ? tr("Connecting in your browser…")
                               : tr("Authorize zelk in your browser to read your Spotify playlists.");
}

ConnectMusicLogic::LocalControl ConnectMusicLogic::localAccess() const {
    switch (m_model.automationPermission()->status()) {
    case ConsentStatus::authorized:
        return Enabled;
    case ConsentStatus::denied:
        return Denied;
    case ConsentStatus::undetermined:
        break;
    }
    return AllowAccess;
}

bool ConnectMusicLogic::offersSettings() const {
    return localAccess() == Denied;
}

void ConnectMusicLogic::begin() {
    m_connectingApple = m_connectingSpotify = false;
    Q_EMIT changed();
}

void ConnectMusicLogic::end(SignIns::Kind kind) {
    if (kind == SignIns::Kind::appleMusic)
        set(m_connectingApple, false);
    else if (kind == SignIns::Kind::spotify)
        set(m_connectingSpotify, false);
}

void ConnectMusicLogic::connectAppleMusic() {
    if (appleMusic() != Connect)
        return;
    set(m_connectingApple, true);
    m_model.signIns()->begin(SignIns::Kind::appleMusic, readSettings);
}

void ConnectMusicLogic::connectSpotify() {
    if (spotify() != Connect)
        return;
    set(m_connectingSpotify, true);
    m_model.signIns()->begin(SignIns::Kind::spotify);
}

void ConnectMusicLogic::allowAccess() {
    if (localAccess() == AllowAccess)
        m_model.signIns()->begin(SignIns::Kind::localLibrary);
}

void ConnectMusicLogic::openSettings() {
    AppleMusicLocalAccess::shared().openAutomationSettings();
}

void ConnectMusicLogic::set(bool &flag, bool value) {
    if (flag == value)
        return;
    flag = value;
    Q_EMIT changed();
}

} // namespace zelk

#include "Views/Onboarding/ConnectMusicLogic.h"

#include "Services/AppleMusicLocalAccess.h"

namespace zelk {

namespace {

ConnectMusicLogic::Control controlOf(bool isConnected, bool isConnecting) {
    if (isConnected)
        return ConnectMusicLogic::Connected;
    return isConnecting ? ConnectMusicLogic::Connecting : ConnectMusicLogic::Connect;
}

} // namespace

ConnectMusicLogic::ConnectMusicLogic(AppModel &model, QObject *parent)
    : QObject(parent), m_model(model), m_signIns(model) {
    connect(&m_model, &AppModel::settingsChanged, this, &ConnectMusicLogic::attach);
    connect(m_model.automationPermission(), &AutomationPermissionMonitor::statusChanged, this,
            &ConnectMusicLogic::changed);
    connect(&m_signIns, &SignIns::appleMusicEnded, this, [this] { set(m_connectingApple, false); });
    connect(&m_signIns, &SignIns::spotifyEnded, this, [this] { set(m_connectingSpotify, false); });
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

void ConnectMusicLogic::connectAppleMusic() {
    if (appleMusic() != Connect)
        return;
    set(m_connectingApple, true);
    m_signIns.connectAppleMusic();
}

void ConnectMusicLogic::connectSpotify() {
    if (spotify() != Connect)
        return;
    set(m_connectingSpotify, true);
    m_signIns.connectSpotify();
}

void ConnectMusicLogic::allowAccess() {
    if (localAccess() == AllowAccess)
        m_signIns.requestLocalAccess();
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

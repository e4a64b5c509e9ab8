#include "Views/Settings/AccountLogic.h"

#include "Services/AppleMusicAuthService.h"

namespace zelk {

namespace {

AccountService serviceOf(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return AccountService::applemusic;
    case PlaylistSourceId::spotify:
        return AccountService::spotify;
    }
    return {};
}

QString lastErrorOf(const SettingsStore *settings) {
    return settings ? settings->lastError().value_or(QString()) : QString();
}

} // namespace

AccountLogic::AccountLogic(AppModel &model, PlaylistSourceId source, QObject *parent)
    : QObject(parent), m_model(model), m_source(source) {
    connect(&m_model, &AppModel::settingsChanged, this, &AccountLogic::attach);
    attach();
}

void AccountLogic::attach() {
    if (m_settings == m_model.settings())
        return;
    m_settings = m_model.settings();
    connect(m_settings, &SettingsStore::configChanged, this, &AccountLogic::changed);
    connect(m_settings, &SettingsStore::lastErrorChanged, this, &AccountLogic::dropStoresFailure);
    Q_EMIT changed();
}

bool AccountLogic::isConnected() const {
    if (!m_settings)
        return false;
    switch (m_source) {
    case PlaylistSourceId::apple:
        return m_settings->appleMusicConnected();
    case PlaylistSourceId::spotify:
        return m_settings->spotifyConnected();
    }
    return false;
}

// What the store now says is of something else that was done since.
void AccountLogic::dropStoresFailure() {
    if (!m_isStoresFailure)
        return;
    m_failure.clear();
    Q_EMIT changed();
}

void AccountLogic::leave() {
    m_failure.clear();
    Q_EMIT changed();
}

void AccountLogic::act() {
    if (!canAct())
        return;
    const bool connecting = !isConnected();
    begin(connecting);
    // The model's task: it goes on when whoever started it has closed the window.
    startTask(&m_model, [self = QPointer(this), connecting](const std::stop_token &) -> QCoro::Task<> {
        return connecting ? connectAccount(self) : disconnectAccount(self);
    });
}

void AccountLogic::begin(bool connecting) {
    m_connecting = connecting;
    m_failure.clear();
    Q_EMIT changed();
}

void AccountLogic::end(const QString &failure, bool isStoresFailure) {
    m_connecting = false;
    m_failure = failure;
    m_isStoresFailure = isStoresFailure;
    Q_EMIT changed();
}

QCoro::Task<> AccountLogic::signIn() {
    if (m_source == PlaylistSourceId::apple)
        return AppleMusicAuthService::shared().connect(m_model);
    return m_model.connectSpotify();
}

QCoro::Task<> AccountLogic::connectAccount(QPointer<AccountLogic> self) {
    if (!self)
        co_return;
    const QString before = lastErrorOf(self->m_settings);
    auto signingIn = self->signIn();
    co_await signingIn;
    if (!self || !self->m_connecting)
        co_return;
    // A sign-in that failed has said so, and has read nothing back: what the store says then is older.
    const QString after = lastErrorOf(self->m_settings);
    self->end(after == before ? QString() : after, true);
}

QCoro::Task<> AccountLogic::disconnectAccount(QPointer<AccountLogic> self) {
    if (!self)
        co_return;
    QString failure;
    try {
        auto disconnecting = self->m_model.disconnectAccount(serviceOf(self->m_source));
        co_await disconnecting;
    } catch (const HelperError &error) {
        failure = describe(error);
    }
    if (!self)
        co_return;
    if (failure.isEmpty())
        self->end(lastErrorOf(self->m_settings), true);
    else
        self->end(failure, false);
}

} // namespace zelk

#include "Views/Settings/AccountLogic.h"

#include <utility>

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

SignIns::Kind kindOf(PlaylistSourceId source) {
    switch (source) {
    case PlaylistSourceId::apple:
        return SignIns::Kind::appleMusic;
    case PlaylistSourceId::spotify:
        return SignIns::Kind::spotify;
    }
    return {};
}

QString lastErrorOf(const SettingsStore *settings) {
    return settings ? settings->lastError().value_or(QString()) : QString();
}

} // namespace

AccountLogic::AccountLogic(AppModel &model, PlaylistSourceId source, QObject *parent)
    : QObject(parent), m_model(model), m_source(source), m_kind(kindOf(source)) {
    connect(m_model.signIns(), &SignIns::changed, this, &AccountLogic::changed);
    connect(m_model.signIns(), &SignIns::ended, this, &AccountLogic::endSignIn);
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
    m_saidBefore.reset();
    tell({}, false);
    if (!isConnected())
        return signIn();
    // The model's task: it goes on when whoever started it has closed the window.
    startTask(&m_model, [self = QPointer(this)](const std::stop_token &) { return disconnectAccount(self); });
}

void AccountLogic::signIn() {
    m_saidBefore = lastErrorOf(m_settings);
    m_model.signIns()->begin(m_kind);
}

void AccountLogic::endSignIn(SignIns::Kind kind) {
    if (kind != m_kind || !m_saidBefore)
        return;
    // A sign-in that failed has said so, and has read nothing back: what the store says then is older.
    const QString before = *std::exchange(m_saidBefore, std::nullopt);
    const QString after = lastErrorOf(m_settings);
    tell(after == before ? QString() : after, true);
}

void AccountLogic::tell(const QString &failure, bool isStoresFailure) {
    m_failure = failure;
    m_isStoresFailure = isStoresFailure;
    Q_EMIT changed();
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
        self->tell(lastErrorOf(self->m_settings), true);
    else
        self->tell(failure, false);
}

} // namespace zelk

#pragma once

#include "App/AppModel.h"
#include "Views/Settings/AccountFace.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

#include <optional>

namespace zelk {

// One account whose playlists are read. Whether it is connected is the configuration's to say, and its row stays as it
// is until that changes.
class AccountLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString logo READ logo CONSTANT)
    Q_PROPERTY(QColor accent READ accent CONSTANT)
    Q_PROPERTY(zelk::AccountFace face READ face NOTIFY changed)
    // False while the user signs in, here or in the setup: a second sign-in would open a second page.
    Q_PROPERTY(bool canAct READ canAct NOTIFY changed)
    // Why what was asked for didn't happen; empty for none. A failed sign-in is told by whoever signs in.
    Q_PROPERTY(QString failure READ failure NOTIFY changed)

public:
    AccountLogic(AppModel &model, PlaylistSourceId source, QObject *parent = nullptr);

    QString name() const { return Tokens::Source::displayName(m_source); }
    QString logo() const { return Tokens::Source::logoAsset(m_source); }
    QColor accent() const { return Tokens::Source::accent(m_source); }
    AccountFace face() const { return accountFace(isConnected()); }
    bool canAct() const { return !m_model.signIns()->isUnderWay(m_kind) || isConnected(); }
    QString failure() const { return m_failure; }

    // Does what the face says.
    Q_INVOKABLE void act();
    // Whoever looked is gone: a failure has been seen.
    void leave();

Q_SIGNALS:
    void changed();

private:
    bool isConnected() const;
    void attach();
    void dropStoresFailure();
    void signIn();
    void endSignIn(SignIns::Kind kind);
    void tell(const QString &failure, bool isStoresFailure);
    static QCoro::Task<> disconnectAccount(QPointer<AccountLogic> self);

    AppModel &m_model;
    const PlaylistSourceId m_source;
    const SignIns::Kind m_kind;
    QPointer<SettingsStore> m_settings;
    // What the store said before the sign-in that was begun here, while that is under way.
    std::optional<QString> m_saidBefore;
    QString m_failure;
    bool m_isStoresFailure = false; // which goes when the store's does
};

} // namespace zelk

#pragma once

#include "Views/Settings/AccountLogic.h"

namespace zelk {

// Where playlists come from: the accounts, and the user's own library on this machine.
class AccountsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(zelk::AccountLogic *appleMusic READ appleMusic CONSTANT)
    Q_PROPERTY(zelk::AccountLogic *spotify READ spotify CONSTANT)
    Q_PROPERTY(zelk::AccountFace local READ local NOTIFY localChanged)

public:
    explicit AccountsLogic(AppModel &model, QObject *parent = nullptr);

    AccountLogic *appleMusic() { return &m_appleMusic; }
    AccountLogic *spotify() { return &m_spotify; }
    AccountFace local() const { return localFace(m_model.automationPermission()->status()); }

    // Does what the local library's face says.
    Q_INVOKABLE void actOnLocal();
    void leave();

Q_SIGNALS:
    void localChanged();

private:
    AppModel &m_model;
    AccountLogic m_appleMusic{m_model, PlaylistSourceId::apple};
    AccountLogic m_spotify{m_model, PlaylistSourceId::spotify};
};

} // namespace zelk

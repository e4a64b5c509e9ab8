#pragma once

#include "App/AppModel.h"

#include <QObject>
#include <qqmlregistration.h>

namespace zelk {

// Where the connecting of music stands, as one showing of its screen sees it: what this showing didn't start, it
// doesn't wait for.
class ConnectMusicLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(Control appleMusic READ appleMusic NOTIFY changed)
    Q_PROPERTY(Control spotify READ spotify NOTIFY changed)
    Q_PROPERTY(QString spotifySubtitle READ spotifySubtitle NOTIFY changed)
    Q_PROPERTY(LocalControl localAccess READ localAccess NOTIFY changed)
    // The way to where a consent is changed: it was refused, or asking led to no answer.
    Q_PROPERTY(bool offersSettings READ offersSettings NOTIFY changed)

public:
    enum Control { Connected, Connecting, Connect };
    Q_ENUM(Control)
    enum LocalControl { Enabled, Denied, AllowAccess };
    Q_ENUM(LocalControl)

    explicit ConnectMusicLogic(AppModel &model, QObject *parent = nullptr);

    Control appleMusic() const;
    Control spotify() const;
    QString spotifySubtitle() const;
    LocalControl localAccess() const;
    bool offersSettings() const;

    // The screen has come up anew.
    Q_INVOKABLE void begin();
    Q_INVOKABLE void connectAppleMusic();
    Q_INVOKABLE void connectSpotify();
    Q_INVOKABLE void allowAccess();
    Q_INVOKABLE void openSettings();

Q_SIGNALS:
    void changed();

private:
    void attach();
    void end(SignIns::Kind kind);
    void set(bool &flag, bool value);

    AppModel &m_model;
    // Of this showing.
    bool m_connectingApple = false;
    bool m_connectingSpotify = false;
};

} // namespace zelk

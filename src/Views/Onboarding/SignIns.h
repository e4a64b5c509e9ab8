#pragma once

#include "App/AppModel.h"

#include <QObject>

namespace zelk {

// The sign-ins that the setup starts, which go on when its screen, or all of it, has gone: at most one of each at a
// time, whoever asks.
class SignIns : public QObject {
    Q_OBJECT

public:
    explicit SignIns(AppModel &model, QObject *parent = nullptr) : QObject(parent), m_model(model) {}

    // These two say their end. What came of each shows in the model's stores.
    void connectAppleMusic();
    void connectSpotify();
    // Asks for the user's own music library.
    void requestLocalAccess();

Q_SIGNALS:
    void appleMusicEnded();
    void spotifyEnded();

private:
    using Ended = void (SignIns::*)();

    // Runs `task`, which the model owns, unless it runs already; says `ended` afterwards, if there is anything to say.
    void start(bool &isRunning, Ended ended, QCoro::Task<> (*task)(QPointer<AppModel> model));

    AppModel &m_model;
    bool m_appleMusic = false;
    bool m_spotify = false;
    bool m_localAccess = false;
};

} // namespace zelk

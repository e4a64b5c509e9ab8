#include "Views/Onboarding/SignIns.h"

#include "Services/AppleMusicAuthService.h"
#include "Views/LocalAccess.h"

#include <QPointer>
#include <QScopeGuard>

namespace zelk {

namespace {

QCoro::Task<> signInToAppleMusic(QPointer<AppModel> model) {
    auto connecting = AppleMusicAuthService::shared().connect(*model);
    co_await connecting;
    if (!model || !model->settings())
        co_return;
    auto refreshing = model->settings()->refresh();
    co_await refreshing;
}

QCoro::Task<> signInToSpotify(QPointer<AppModel> model) {
    auto connecting = model->connectSpotify();
    co_await connecting;
}

} // namespace

void SignIns::connectAppleMusic() {
    start(m_appleMusic, &SignIns::appleMusicEnded, signInToAppleMusic);
}

void SignIns::connectSpotify() {
    start(m_spotify, &SignIns::spotifyEnded, signInToSpotify);
}

void SignIns::requestLocalAccess() {
    start(m_localAccess, nullptr, zelk::requestLocalAccess);
}

void SignIns::start(bool &isRunning, Ended ended, QCoro::Task<> (*task)(QPointer<AppModel> model)) {
    if (isRunning)
        return;
    isRunning = true;
    startTask(&m_model,
              [self = QPointer(this), model = QPointer(&m_model), running = &isRunning, ended,
               task](std::stop_token) -> QCoro::Task<> {
                  const auto over = qScopeGuard([self, running, ended] {
                      if (!self)
                          return;
                      *running = false;
                      if (ended)
                          Q_EMIT(self->*ended)();
                  });
                  auto working = task(model);
                  co_await working;
              });
}

} // namespace zelk

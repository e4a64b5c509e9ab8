#include "App/SignIns.h"

#include "App/AppModel.h"
#include "Services/AppleMusicAuthService.h"
#include "Support/Task.h"

#include <QScopeGuard>

#include <utility>

namespace zelk {

namespace {

QCoro::Task<> askForLocalLibrary(QPointer<AppModel> model) {
    auto asking = model->automationPermission()->requestAccess();
    const auto status = co_await asking;
    if (!model || !model->library() || status != ConsentStatus::authorized)
        co_return;
    auto refreshing = model->library()->refresh(PlaylistSourceId::apple);
    co_await refreshing;
}

QCoro::Task<> signIn(SignIns::Kind kind, AppModel &model) {
    switch (kind) {
    case SignIns::Kind::appleMusic:
        return AppleMusicAuthService::shared().connect(model);
    case SignIns::Kind::spotify:
        return model.connectSpotify();
    case SignIns::Kind::localLibrary:
        break;
    }
    return askForLocalLibrary(&model);
}

QCoro::Task<> signInAndThen(SignIns::Kind kind, SignIns::Then then, QPointer<AppModel> model) {
    auto signingIn = signIn(kind, *model);
    co_await signingIn;
    if (!model || !then)
        co_return;
    auto following = then(*model);
    co_await following;
}

} // namespace

SignIns::SignIns(AppModel *model) : QObject(model), _model(model) {}

void SignIns::begin(Kind kind, Then then) {
    if (!_underWay.insert(kind).second)
        return;
    startTask(_model,
              [self = QPointer(this), kind, then = std::move(then),
               model = QPointer(_model)](const std::stop_token &) -> QCoro::Task<> {
                  const auto over = qScopeGuard([self, kind] {
                      if (self)
                          self->end(kind);
                  });
                  auto working = signInAndThen(kind, then, model);
                  co_await working;
              });
    Q_EMIT changed();
}

void SignIns::end(Kind kind) {
    _underWay.erase(kind);
    Q_EMIT changed();
    Q_EMIT ended(kind);
}

} // namespace zelk

#include "Views/LocalAccess.h"

namespace zelk {

QCoro::Task<> requestLocalAccess(QPointer<AppModel> model) {
    if (!model)
        co_return;
    auto asking = model->automationPermission()->requestAccess();
    const auto status = co_await asking;
    if (!model || !model->library() || status != ConsentStatus::authorized)
        co_return;
    auto refreshing = model->library()->refresh(PlaylistSourceId::apple);
    co_await refreshing;
}

} // namespace zelk

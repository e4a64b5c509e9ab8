#include "Views/Settings/AccountsLogic.h"

#include "Services/AppleMusicLocalAccess.h"

namespace zelk {

namespace {

QCoro::Task<> grantAccess(QPointer<AppModel> model) {
    if (!model)
        co_return;
    auto requesting = model->automationPermission()->requestAccess();
    const auto status = co_await requesting;
    if (!model || !model->library() || status != ConsentStatus::authorized)
        co_return;
    auto refreshing = model->library()->refresh(PlaylistSourceId::apple);
    co_await refreshing;
}

} // namespace

AccountsLogic::AccountsLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(m_model.automationPermission(), &AutomationPermissionMonitor::statusChanged, this,
            &AccountsLogic::localChanged);
}

void AccountsLogic::actOnLocal() {
    switch (m_model.automationPermission()->status()) {
    case ConsentStatus::authorized:
        return;
    case ConsentStatus::undetermined:
        startTask(&m_model, [model = QPointer(&m_model)](const std::stop_token &) { return grantAccess(model); });
        return;
    case ConsentStatus::denied:
        AppleMusicLocalAccess::shared().openAutomationSettings();
        return;
    }
}

} // namespace zelk

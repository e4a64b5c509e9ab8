#include "Views/Settings/AccountsLogic.h"

#include "Services/AppleMusicLocalAccess.h"

namespace zelk {

AccountsLogic::AccountsLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(m_model.automationPermission(), &AutomationPermissionMonitor::statusChanged, this,
            &AccountsLogic::localChanged);
}

void AccountsLogic::leave() {
    m_appleMusic.leave();
    m_spotify.leave();
}

void AccountsLogic::actOnLocal() {
    switch (m_model.automationPermission()->status()) {
    case ConsentStatus::authorized:
        return;
    case ConsentStatus::undetermined:
        m_model.signIns()->begin(SignIns::Kind::localLibrary);
        return;
    case ConsentStatus::denied:
        AppleMusicLocalAccess::shared().openAutomationSettings();
        return;
    }
}

} // namespace zelk

#include "Views/Onboarding/SetupLogic.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QString didOnboard = u"didOnboard"_s;

} // namespace

SetupLogic::SetupLogic(AppModel &model, std::shared_ptr<UserDefaults> defaults, std::shared_ptr<FolderPanel> folders,
                       QObject *parent)
    : QObject(parent), m_model(model), m_defaults(std::move(defaults)), m_tools(model), m_music(model),
      m_choices(model, std::move(folders)) {
    connect(&m_model, &AppModel::setupCoordinatorChanged, this, &SetupLogic::follow);
    connect(&m_model, &AppModel::toolProvisioningChanged, this, &SetupLogic::followTools);
    connect(&m_model, &AppModel::isOnboardingPresentedChanged, this, &SetupLogic::remember);
    connect(&m_model, &AppModel::isOnboardingPresentedChanged, this, &SetupLogic::presentedChanged);
    follow();
    followTools();
}

void SetupLogic::offer() {
    if (!m_defaults->boolValue(didOnboard))
        m_model.beginOnboarding(SetupCoordinator::Mode::firstRun);
}

void SetupLogic::remember() {
    // However it ended, it isn't offered again.
    if (!presented())
        m_defaults->set(didOnboard, true);
}

void SetupLogic::follow() {
    m_coordinator = m_model.setupCoordinator();
    if (m_coordinator) {
        connect(m_coordinator, &SetupCoordinator::currentScreenChanged, this, &SetupLogic::changed);
        connect(m_coordinator, &SetupCoordinator::canAdvancePastToolsChanged, this, &SetupLogic::changed);
        connect(m_coordinator, &SetupCoordinator::isCommittingChanged, this, &SetupLogic::changed);
        connect(m_coordinator, &SetupCoordinator::sourceWarningNeeded, this, &SetupLogic::sourceWarningNeeded);
    }
    Q_EMIT changed();
}

void SetupLogic::followTools() {
    if (const auto *tools = m_model.toolProvisioning())
        connect(tools, &ToolProvisioningStore::phaseChanged, this, &SetupLogic::changed);
}

bool SetupLogic::backEnabled() const {
    const auto *tools = m_model.toolProvisioning();
    return screen() != Screen::prepareTools || !tools || tools->phase() != ProvisioningPhase::running;
}

bool SetupLogic::primaryEnabled() const {
    if (!m_coordinator)
        return false;
    if (screen() == Screen::prepareTools)
        return m_coordinator->canAdvancePastTools();
    return screen() != Screen::finish || !m_coordinator->isCommitting();
}

void SetupLogic::back() {
    if (m_coordinator && backEnabled())
        m_coordinator->back();
}

void SetupLogic::skip() {
    if (m_coordinator && showsSkip())
        m_coordinator->advance();
}

void SetupLogic::primary() {
    if (!primaryEnabled() || m_isEnding)
        return;
    if (screen() != Screen::finish) {
        m_coordinator->advance();
        return;
    }
    m_coordinator->attemptFinish();
    // The commit begins on the next turn; a second press in this one must not begin another.
    m_isEnding = true;
    QMetaObject::invokeMethod(
        this, [this] { m_isEnding = false; }, Qt::QueuedConnection);
}

void SetupLogic::connectASource() {
    if (m_coordinator)
        m_coordinator->connectASource();
}

void SetupLogic::continueAnyway() {
    if (m_coordinator)
        m_coordinator->continueAnyway();
}

} // namespace zelk

#include "Views/Onboarding/PrepareToolsLogic.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QString packageManager = u"https://brew.sh"_s;

} // namespace

PrepareToolsLogic::PrepareToolsLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(&m_model, &AppModel::toolProvisioningChanged, this, &PrepareToolsLogic::attach);
    attach();
}

void PrepareToolsLogic::attach() {
    if (const auto *tools = m_model.toolProvisioning()) {
        connect(tools, &ToolProvisioningStore::phaseChanged, this, &PrepareToolsLogic::changed);
        connect(tools, &ToolProvisioningStore::toolsChanged, this, &PrepareToolsLogic::changed);
        connect(tools, &ToolProvisioningStore::lastLogChanged, this, &PrepareToolsLogic::changed);
        connect(tools, &ToolProvisioningStore::lastErrorChanged, this, &PrepareToolsLogic::changed);
    }
    Q_EMIT changed();
}

ProvisioningPhase PrepareToolsLogic::phase() const {
    const auto *tools = m_model.toolProvisioning();
    return tools ? tools->phase() : ProvisioningPhase::idle;
}

QVariantList PrepareToolsLogic::rows() const {
    QVariantList faces;
    if (const auto *tools = m_model.toolProvisioning()) {
        for (const auto &tool : tools->tools())
            faces += QVariant::fromValue(toolRowFace(tool));
    }
    return faces;
}

QString PrepareToolsLogic::failure() const {
    return failed() ? m_model.toolProvisioning()->lastError().value_or(QString()) : QString();
}

QString PrepareToolsLogic::advice() const {
    return tr("Check your internet connection, or install Homebrew from %1, then try again.").arg(packageManager);
}

QString PrepareToolsLogic::log() const {
    const bool isRunning = phase() == ProvisioningPhase::running;
    return isRunning ? m_model.toolProvisioning()->lastLog().value_or(QString()) : QString();
}

void PrepareToolsLogic::begin() {
    if (m_model.toolProvisioning() && phase() == ProvisioningPhase::idle)
        provision();
}

void PrepareToolsLogic::tryAgain() {
    if (failed())
        provision();
}

void PrepareToolsLogic::provision() {
    startTask(m_model.toolProvisioning(),
              [tools = m_model.toolProvisioning()](const std::stop_token &) { return tools->provision(); });
}

} // namespace zelk

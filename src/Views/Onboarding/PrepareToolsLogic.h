#pragma once

#include "App/AppModel.h"
#include "Views/Onboarding/ToolRowFace.h"

#include <QVariantList>
#include <qqmlregistration.h>

namespace zelk {

// The installation of the tools as the setup shows it.
class PrepareToolsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    // ToolRowFaces.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed)
    Q_PROPERTY(bool ready READ ready NOTIFY changed)
    Q_PROPERTY(bool failed READ failed NOTIFY changed)
    // Why it failed; empty where nobody said.
    Q_PROPERTY(QString failure READ failure NOTIFY changed)
    Q_PROPERTY(QString advice READ advice CONSTANT)
    // What the engine said last while it works; empty otherwise.
    Q_PROPERTY(QString log READ log NOTIFY changed)

public:
    explicit PrepareToolsLogic(AppModel &model, QObject *parent = nullptr);

    QVariantList rows() const;
    bool ready() const { return phase() == ProvisioningPhase::ready; }
    bool failed() const { return phase() == ProvisioningPhase::failed; }
    QString failure() const;
    QString advice() const;
    QString log() const;

    // The screen has come up: what was never begun begins.
    Q_INVOKABLE void begin();
    Q_INVOKABLE void tryAgain();

Q_SIGNALS:
    void changed();

private:
    void attach();
    ProvisioningPhase phase() const;
    void provision();

    AppModel &m_model;
};

} // namespace zelk

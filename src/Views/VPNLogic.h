#pragma once

#include "App/AppModel.h"
#include "Views/VPNStatus.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

namespace zelk {

// The tunnel's control in the toolbar. It is there while a tunnel is configured; one that comes back knows nothing of
// what it was before.
class VPNLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool present READ present NOTIFY changed)
    Q_PROPERTY(bool enabled READ enabled NOTIFY changed)
    Q_PROPERTY(bool canTest READ canTest NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    // Empty when the symbol stands alone.
    Q_PROPERTY(QString labelText READ labelText NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(int ink READ ink NOTIFY changed)

public:
    VPNLogic(AppModel &model, std::shared_ptr<Clock> clock, QObject *parent = nullptr);

    // All that is shown.
    VPNStatus status() const;
    bool present() const { return m_present; }
    bool enabled() const { return m_enabled; }
    bool canTest() const { return m_enabled && !m_testing; }
    QString statusText() const { return status().statusText(); }
    QString labelText() const { return status().labelText().value_or(QString()); }
    QString symbol() const { return status().icon(); }
    int ink() const { return static_cast<int>(status().tint()); }

    // Turns the tunnel on or off; why that failed is the settings' to say.
    Q_INVOKABLE void toggle();
    // Tests the connection and shows for a few seconds how that went.
    Q_INVOKABLE void runTest();

Q_SIGNALS:
    void changed();

private:
    using TestFeedback = VPNStatus::TestFeedback;

    void attach();
    void follow();
    void beginAnew();
    void refreshNodeCount();
    void setNodeCount(std::optional<qint64> count);
    void beginTest();
    void endTest(const SettingsStore::ProxyTest &outcome);
    void clearFeedback();
    QCoro::Task<> test(int token, std::stop_token stop);

    AppModel &m_model;
    const std::shared_ptr<Clock> m_clock;
    QPointer<SettingsStore> m_settings;
    bool m_present = false;
    bool m_enabled = false;
    bool m_testing = false;
    std::optional<TestFeedback> m_feedback;
    int m_feedbackToken = 0; // of the latest test: an older one must not take its feedback away
    std::optional<qint64> m_nodeCount;
    TaskHandle m_counting;
    std::unique_ptr<TaskScope> m_life; // of the control as it now stands
};

} // namespace zelk

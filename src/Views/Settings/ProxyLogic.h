#pragma once

#include "App/AppModel.h"
#include "Views/Settings/ProxyFace.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

#include <functional>

namespace zelk {

// Stores, replaces, tests and forgets the tunnel's subscription. Its link is the engine's to keep and never comes back:
// what is known here is whether there is one.
class ProxyLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QString subscription READ subscription WRITE setSubscription NOTIFY changed)
    Q_PROPERTY(bool configured READ configured NOTIFY changed)
    Q_PROPERTY(QString actionText READ actionText NOTIFY changed)
    Q_PROPERTY(bool canAct READ canAct NOTIFY changed)
    // A test is under way, and the button stands for it.
    Q_PROPERTY(bool showsTesting READ showsTesting NOTIFY changed)
    // Empty when there is none.
    Q_PROPERTY(QString outcomeText READ outcomeText NOTIFY changed)
    Q_PROPERTY(QString outcomeSymbol READ outcomeSymbol NOTIFY changed)
    Q_PROPERTY(int outcomeInk READ outcomeInk NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QString footer READ footer NOTIFY changed)
    // The settings' last failure; empty when there is none.
    Q_PROPERTY(QString lastError READ lastError NOTIFY changed)

public:
    explicit ProxyLogic(AppModel &model, QObject *parent = nullptr);

    const QString &subscription() const { return m_face.subscription; }
    void setSubscription(const QString &text);
    bool configured() const { return m_face.configured; }
    QString actionText() const { return m_face.actionText(); }
    bool canAct() const;
    bool showsTesting() const { return m_face.testing && m_face.action() == ProxyFace::Action::test; }
    QString outcomeText() const { return outcome().text; }
    QString outcomeSymbol() const { return outcome().symbol; }
    int outcomeInk() const { return static_cast<int>(outcome().ink); }
    QString detail() const { return m_face.detail(); }
    QString footer() const { return m_face.footer(); }
    QString lastError() const;

    // Does what the button says.
    Q_INVOKABLE void act();
    Q_INVOKABLE void saveSubscription();
    Q_INVOKABLE void runTest();
    Q_INVOKABLE void forget();
    // Whoever looked is gone: what was entered isn't kept, and how the last test went has been seen.
    void leave();

Q_SIGNALS:
    void changed();

private:
    ProxyFace::Outcome outcome() const { return m_face.outcome().value_or(ProxyFace::Outcome()); }
    void attach();
    void follow();
    void change(std::function<QCoro::Task<>(SettingsStore &)> changing);
    void beginAnew();
    void setTesting(bool testing, std::optional<SettingsStore::ProxyTest> result);
    static QCoro::Task<> test(QPointer<ProxyLogic> self);

    AppModel &m_model;
    QPointer<SettingsStore> m_settings;
    ProxyFace m_face;
    int m_generation = 0; // of the subscription: a test of an older one says nothing of this one
};

} // namespace zelk

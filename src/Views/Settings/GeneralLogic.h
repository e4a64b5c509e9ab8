#pragma once

#include "App/AppModel.h"
#include "Services/UpdaterModel.h"
#include "Views/Appearance.h"

#include <QObject>
#include <QWindow>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// The first window of `windows` that the user works in and that isn't the settings; null when there is none.
QWindow *workWindow(const QWindowList &windows);

// The tab of what concerns the application itself.
class GeneralLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QStringList themes READ themes CONSTANT)
    // The chosen place in `themes`; -1 when what is remembered is none of them. No window goes by it.
    Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY themeChanged)
    Q_PROPERTY(bool reduceGlassEffects READ reduceGlassEffects WRITE setReduceGlassEffects NOTIFY appearanceChanged)
    Q_PROPERTY(bool automaticallyChecks READ automaticallyChecks WRITE setAutomaticallyChecks NOTIFY
                   automaticallyChecksChanged)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    // Of the command-line tool; empty when nobody knows.
    Q_PROPERTY(QString cliVersion READ cliVersion NOTIFY cliVersionChanged)

public:
    GeneralLogic(AppModel &model, UpdaterModel &updater, std::shared_ptr<Appearance> appearance,
                 std::shared_ptr<UserDefaults> defaults, QObject *parent = nullptr);

    QStringList themes() const;
    int theme() const;
    void setTheme(int theme);
    bool reduceGlassEffects() const { return m_appearance->reduceGlassEffects(); }
    void setReduceGlassEffects(bool reduce) { m_appearance->setReduceGlassEffects(reduce); }
    bool automaticallyChecks() const { return m_updater.automaticallyChecks(); }
    void setAutomaticallyChecks(bool automatically) { m_updater.setAutomaticallyChecks(automatically); }
    QString currentVersion() const { return m_updater.currentVersion(); }
    QString cliVersion() const;

    Q_INVOKABLE void checkForUpdates() { m_updater.checkForUpdates(); }
    // Opens the setup, which stands in the main window, and brings that before the settings.
    Q_INVOKABLE void reRunSetup();

Q_SIGNALS:
    void themeChanged();
    void appearanceChanged();
    void automaticallyChecksChanged();
    void cliVersionChanged();

private:
    AppModel &m_model;
    UpdaterModel &m_updater;
    const std::shared_ptr<Appearance> m_appearance;
    const std::shared_ptr<UserDefaults> m_defaults;
};

} // namespace zelk

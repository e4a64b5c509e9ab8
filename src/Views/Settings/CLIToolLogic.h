#pragma once

#include "App/AppModel.h"
#include "Services/CLIInstallation.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// How the command-line tool stands, in words.
QString stateText(const CLIToolStore::State &state);
// Whether there is something of its name to take away or to put right.
bool isInstalled(const CLIToolStore::State &state);

// The tab of the command-line tool.
class CLIToolLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QString stateText READ text NOTIFY stateChanged)
    Q_PROPERTY(bool installed READ installed NOTIFY stateChanged)
    Q_PROPERTY(QString version READ version NOTIFY versionChanged) // empty when nobody knows
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged) // empty for none

public:
    CLIToolLogic(AppModel &model, std::shared_ptr<CLIInstaller> installer, QObject *parent = nullptr);

    QString text() const { return zelk::stateText(m_store->state()); }
    bool installed() const { return isInstalled(m_store->state()); }
    QString version() const { return m_store->detectedVersion().value_or(QString()); }
    bool busy() const { return m_installation.busy(); }
    QString lastError() const { return m_installation.lastError().value_or(QString()); }

    Q_INVOKABLE void detect();
    // What is under way keeps another from beginning.
    Q_INVOKABLE void install() { m_installation.install(); }
    Q_INVOKABLE void uninstall() { m_installation.uninstall(); }

Q_SIGNALS:
    void stateChanged();
    void versionChanged();
    void busyChanged();
    void lastErrorChanged();

private:
    CLIToolStore *const m_store;
    CLIInstallation m_installation;
};

} // namespace zelk

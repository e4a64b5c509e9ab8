#pragma once

#include "Services/CLIInstaller.h"
#include "State/CLIToolStore.h"
#include "Support/Task.h"

#include <QObject>
#include <QPointer>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace zelk {

/// Has the installer work on a thread of its own, so that the window lives while the password dialog stands, and has
/// the store look afterwards. What it is released over is cancelled: it waits for nobody.
class CLIInstallation final : public QObject {
    Q_OBJECT
    /// Something is under way; until it is over nothing else is begun.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    /// Why the last one failed. Empty when it didn't, and while one is under way.
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY lastErrorChanged)

public:
    CLIInstallation(std::shared_ptr<CLIInstaller> installer, CLIToolStore *store, QObject *parent = nullptr);

    bool busy() const { return _busy; }
    const std::optional<QString> &lastError() const { return _lastError; }

    Q_INVOKABLE void install();
    Q_INVOKABLE void uninstall();

Q_SIGNALS:
    void busyChanged();
    void lastErrorChanged();

private:
    using Work = std::function<void(CLIInstaller &installer, std::stop_token stop)>;

    void begin(Work work);
    void end(const std::exception_ptr &failure);
    QString lastErrorText() const { return _lastError.value_or(QString()); }
    void setBusy(bool busy);
    void setLastError(std::optional<QString> text);

    const std::shared_ptr<CLIInstaller> _installer;
    const QPointer<CLIToolStore> _store;
    bool _busy = false;
    std::optional<QString> _lastError;
    TaskScope _lifetime;
};

} // namespace zelk

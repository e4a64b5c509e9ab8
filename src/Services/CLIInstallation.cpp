#include "Services/CLIInstallation.h"

#include "Support/SerialExecutor.h"
#include "Transport/HelperError.h"

#include <utility>

namespace zelk {

CLIInstallation::CLIInstallation(std::shared_ptr<CLIInstaller> installer, CLIToolStore *store, QObject *parent)
    : QObject(parent), _installer(std::move(installer)), _store(store) {}

void CLIInstallation::install() {
    begin([](CLIInstaller &installer, std::stop_token stop) { installer.install(std::move(stop)); });
}

void CLIInstallation::uninstall() {
    begin([](CLIInstaller &installer, std::stop_token stop) { installer.uninstall(std::move(stop)); });
}

void CLIInstallation::begin(Work work) {
    if (_busy)
        return;
    setBusy(true);
    setLastError(std::nullopt);
    // The thread is there for this one piece of work, which is rare.
    SerialExecutor::make(QStringLiteral("orrim.zelk.cli-installer"))
        ->post([installer = _installer, work = std::move(work), stop = _lifetime.token(), self = QPointer(this),
                home = SerialExecutor::current()] {
            if (stop.stop_requested())
                return;
            std::exception_ptr failure;
            try {
                work(*installer, stop);
            } catch (...) {
                failure = std::current_exception();
            }
            home->post([self, failure] {
                if (self)
                    self->end(failure);
            });
        });
}

void CLIInstallation::end(const std::exception_ptr &failure) {
    const QPointer self(this);
    if (failure)
        setLastError(describe(failure));
    if (self && _store)
        _store->detect();
    if (self)
        setBusy(false);
}

void CLIInstallation::setBusy(bool busy) {
    if (std::exchange(_busy, busy) != busy)
        Q_EMIT busyChanged();
}

void CLIInstallation::setLastError(std::optional<QString> text) {
    if (text == _lastError)
        return;
    _lastError = std::move(text);
    Q_EMIT lastErrorChanged();
}

} // namespace zelk

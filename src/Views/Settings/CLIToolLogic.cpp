#include "Views/Settings/CLIToolLogic.h"

#include <utility>

namespace zelk {

QString stateText(const CLIToolStore::State &state) {
    using State = CLIToolState;
    return match(
        state, [](const State::InstalledSymlink &) { return CLIToolLogic::tr("Installed"); },
        [](const State::InstalledSymlinkStale &) { return CLIToolLogic::tr("Installed (update available)"); },
        [](const State::FallbackInstalled &installed) {
            return CLIToolLogic::tr("Installed at %1").arg(installed.path);
        },
        [](const State::ForeignCopy &copy) { return CLIToolLogic::tr("Other copy at %1").arg(copy.path); },
        [](const State::NotInstalled &) { return CLIToolLogic::tr("Not installed"); },
        [](const State::Dangling &) { return CLIToolLogic::tr("Broken link"); },
        [](const State::Unknown &) { return CLIToolLogic::tr("Checking…"); });
}

bool isInstalled(const CLIToolStore::State &state) {
    return state.kind() != CLIToolKind::unknown && state.kind() != CLIToolKind::notInstalled;
}

CLIToolLogic::CLIToolLogic(AppModel &model, std::shared_ptr<CLIInstaller> installer, QObject *parent)
    : QObject(parent), m_store(model.cliTool()), m_installation(std::move(installer), m_store) {
    connect(m_store, &CLIToolStore::stateChanged, this, &CLIToolLogic::stateChanged);
    connect(m_store, &CLIToolStore::detectedVersionChanged, this, &CLIToolLogic::versionChanged);
    connect(&m_installation, &CLIInstallation::busyChanged, this, &CLIToolLogic::busyChanged);
    connect(&m_installation, &CLIInstallation::lastErrorChanged, this, &CLIToolLogic::lastErrorChanged);
}

void CLIToolLogic::detect() {
    startTask(m_store, [store = QPointer(m_store)](std::stop_token) -> QCoro::Task<> {
        store->detect();
        co_return;
    });
}

} // namespace zelk

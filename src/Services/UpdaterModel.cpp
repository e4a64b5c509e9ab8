#include "Services/UpdaterModel.h"

#include <utility>

namespace zelk {

UpdaterModel::UpdaterModel(UpdaterSurroundings surroundings, QObject *parent)
    : QObject(parent), _currentVersion(shownVersion(surroundings.bundle)), _controller(true, std::move(surroundings)) {
    connect(_controller.updater(), &AppUpdater::automaticallyChecksForUpdatesChanged, this,
            &UpdaterModel::automaticallyChecksChanged);
}

void UpdaterModel::setAutomaticallyChecks(bool automatically) {
    _controller.updater()->setAutomaticallyChecksForUpdates(automatically);
}

void UpdaterModel::checkForUpdates() {
    _controller.updater()->checkForUpdates();
}

} // namespace zelk

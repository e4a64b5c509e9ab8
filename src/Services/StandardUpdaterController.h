#pragma once

#include "Services/AppUpdater.h"

namespace zelk {

/// Holds the application's updater, and starts it at launch.
class StandardUpdaterController final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::AppUpdater *updater READ updater CONSTANT)

public:
    /// With `startingUpdater` the updater begins to check by itself; without, it only does what it is asked for.
    StandardUpdaterController(bool startingUpdater, UpdaterSurroundings surroundings, QObject *parent = nullptr)
        : QObject(parent), _updater(std::move(surroundings)) {
        if (startingUpdater)
            _updater.start();
    }

    AppUpdater *updater() { return &_updater; }

private:
    AppUpdater _updater;
};

} // namespace zelk

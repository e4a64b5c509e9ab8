#pragma once

#include "Services/Updater.h"

namespace zelk {

/// Holds the application's updater, and starts it at launch.
class StandardUpdaterController final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::Updater *updater READ updater CONSTANT)

public:
    /// With `startingUpdater` the updater begins to check by itself; without, it only does what it is asked for.
    StandardUpdaterController(bool startingUpdater, UpdaterSurroundings surroundings, QObject *parent = nullptr)
        : QObject(parent), _updater(std::move(surroundings)) {
        if (startingUpdater)
            _updater.start();
    }

    Updater *updater() { return &_updater; }

private:
    Updater _updater;
};

} // namespace zelk

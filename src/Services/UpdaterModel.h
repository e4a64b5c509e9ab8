#pragma once

#include "Services/StandardUpdaterController.h"

namespace zelk {

/// What the windows read and change of the updater. Made once, at launch; the updater starts with it.
class UpdaterModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::StandardUpdaterController *controller READ controller CONSTANT)
    /// Always true: the updater itself sorts out a second request.
    Q_PROPERTY(bool canCheck READ canCheck CONSTANT)
    Q_PROPERTY(bool automaticallyChecks READ automaticallyChecks WRITE setAutomaticallyChecks NOTIFY
                   automaticallyChecksChanged)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)

public:
    explicit UpdaterModel(UpdaterSurroundings surroundings, QObject *parent = nullptr);

    StandardUpdaterController *controller() { return &_controller; }
    bool canCheck() const { return true; }
    bool automaticallyChecks() { return _controller.updater()->automaticallyChecksForUpdates(); }
    void setAutomaticallyChecks(bool automatically);
    const QString &currentVersion() const { return _currentVersion; }

    Q_INVOKABLE void checkForUpdates();

Q_SIGNALS:
    void automaticallyChecksChanged();

private:
    const QString _currentVersion;
    StandardUpdaterController _controller;
};

} // namespace zelk

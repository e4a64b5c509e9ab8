#pragma once

#include "App/AppModel.h"
#include "Views/MainWindow.h"

#include <memory>

namespace zelk {

/// The application as it stands from launch to quit: the one model, the updater, and the services of this machine that
/// both stand on. Making it speaks with no engine and no network; the updater begins its schedule. Needs a
/// QGuiApplication.
class ZELKApp {
public:
    enum class Attendance { attended, unattended };

    /// Unattended, nothing is checked or asked that nobody is there to see.
    explicit ZELKApp(Attendance attendance);
    ~ZELKApp();
    Q_DISABLE_COPY_MOVE(ZELKApp)

    AppModel &model() const;
    /// What its main window needs of this machine.
    MainWindow::Surroundings windowSurroundings() const;
    /// Shows the settings, or brings them to the front.
    void openSettings() const;

private:
    struct Parts;
    const std::unique_ptr<Parts> _parts;
};

} // namespace zelk

#pragma once

#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Views/MainWindow.h"

namespace zelk {

/// The main window of somebody who has been here before, over an engine that is given, in the machine's own time.
class OpenWindow {
public:
    OpenWindow(AppModel::Launcher launcher, const std::shared_ptr<Clock> &clock)
        : _around(onboarded(clock)), model(std::move(launcher), _around),
          window(model, {.clock = clock,
                         .files = FileBrowser::ofSession([](const QUrl &) {}),
                         .appearance = std::make_shared<Appearance>(DesktopSettings::ofSession(), _around.defaults),
                         .defaults = _around.defaults,
                         .openUrl = {},
                         .checkForUpdates = {}}) {}

private:
    static AppModel::Surroundings onboarded(const std::shared_ptr<Clock> &clock) {
        auto made = surroundings(clock);
        made.defaults->set(QStringLiteral("didOnboard"), true);
        return made;
    }

    AppModel::Surroundings _around;

public:
    AppModel model;
    MainWindow window;
};

} // namespace zelk

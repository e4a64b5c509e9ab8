#pragma once

#include "App/AppModel.h"
#include "Platform/FolderPanel.h"
#include "Platform/UserDefaults.h"
#include "Services/CLIInstaller.h"
#include "Services/UpdaterModel.h"
#include "Views/Appearance.h"

#include <QPoint>
#include <QWindow>

#include <memory>
#include <optional>

class QQmlEngine;
class QQuickWindow;

namespace zelk {

class TokensSingleton;

// The window of the settings, of which there is one at most. Each opening begins anew, but for the tab in view, the
// window's place and what is under way, whose end shows when the window is there again. The application doesn't go on
// for its sake.
class SettingsWindow {
public:
    // What the settings need of the machine and of the application that they are part of.
    struct Surroundings {
        std::shared_ptr<Appearance> appearance;
        std::shared_ptr<UserDefaults> defaults;
        UpdaterModel *updater = nullptr; // outlives the settings
        std::shared_ptr<CLIInstaller> installer;
        std::shared_ptr<FolderPanel> folders;
    };

    // `model` outlives it.
    SettingsWindow(AppModel &model, Surroundings surroundings);
    ~SettingsWindow();
    Q_DISABLE_COPY_MOVE(SettingsWindow)

    // Shows the window, or brings it to the front.
    void open();

    // Null while it isn't open, or when its views can't be loaded, with what is wrong in the log: a broken build.
    QQuickWindow *window() const;
    // The measures and colours that this window's views read.
    TokensSingleton &tokens() const;

private:
    struct Contents;
    void make();
    void leave();

    AppModel &m_model;
    const Surroundings m_surroundings;
    QWindow m_none; // never shown: with a window before it, this one doesn't keep the application going
    std::optional<QPoint> m_place;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<Contents> m_contents; // from the first opening; goes before the engine
};

} // namespace zelk

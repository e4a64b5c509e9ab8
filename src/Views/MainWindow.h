#pragma once

#include "App/AppModel.h"
#include "Platform/FileBrowser.h"
#include "Platform/FolderPanel.h"
#include "Platform/GlobalMenu.h"
#include "Views/Appearance.h"

#include <QUrl>

#include <functional>
#include <memory>

class QQmlApplicationEngine;
class QQuickWindow;

namespace zelk {

class TokensSingleton;

// The main window over a model, which must outlive it; there from its making to its end. Needs a QGuiApplication, and
// the main thread's executor to start the model on.
class MainWindow {
public:
    // What the window needs of the machine that it runs on.
    struct Surroundings {
        std::shared_ptr<Clock> clock;
        std::shared_ptr<FileBrowser> files;
        std::shared_ptr<FolderPanel> folders;
        std::shared_ptr<Appearance> appearance;
        std::shared_ptr<UserDefaults> defaults; // remember how the window was left
        std::function<void(const QUrl &url)> openUrl;
        std::function<void()> checkForUpdates;
        std::function<void()> openAbout{};
        std::function<void()> openSettings{};     // without it the menu's entry is disabled
        bool offersSetup = true;                  // to somebody who has never been through it
        std::shared_ptr<GlobalMenu> globalMenu{}; // without it the menus stay in the window
    };

    // Shows the window and starts the model, which does nothing for one that has its client.
    MainWindow(AppModel &model, Surroundings surroundings);
    ~MainWindow();
    Q_DISABLE_COPY_MOVE(MainWindow)

    // Null only when the views can't be loaded, with what is wrong in the log: a broken build.
    QQuickWindow *window() const;
    // Before whatever covers it, and with the keyboard, as far as the desktop lets it.
    void bringToFront() const;
    // The measures and colours that this window's views read.
    TokensSingleton &tokens() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace zelk

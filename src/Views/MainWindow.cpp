#include "Views/MainWindow.h"

#include "Styling/TokensSingleton.h"
#include "Support/Task.h"
#include "Views/BannerLogic.h"
#include "Views/CommandsLogic.h"
#include "Views/DesktopMenu.h"
#include "Views/DetailLogic.h"
#include "Views/Onboarding/SetupLogic.h"
#include "Views/OrphansLogic.h"
#include "Views/ReviewLogic.h"
#include "Views/SidebarLogic.h"
#include "Views/VPNLogic.h"
#include "Views/ViewEngine.h"
#include "Views/WindowMemory.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

struct MainWindow::Parts {
    Parts(AppModel &model, const Surroundings &surroundings)
        : commands(model, {surroundings.files, surroundings.openUrl, surroundings.checkForUpdates,
                           surroundings.openAbout, surroundings.openSettings}),
          sidebar(model, surroundings.clock), detail(model), review(model), banner(model),
          vpn(model, surroundings.clock), orphans(model, surroundings.files),
          setup(model, surroundings.defaults, surroundings.folders), appearance(surroundings.appearance),
          memory(surroundings.defaults), desktopMenu(surroundings.globalMenu) {}

    CommandsLogic commands;
    SidebarLogic sidebar;
    DetailLogic detail;
    ReviewLogic review;
    BannerLogic banner;
    VPNLogic vpn;
    OrphansLogic orphans;
    SetupLogic setup;
    std::shared_ptr<Appearance> appearance;
    WindowMemory memory;
    DesktopMenu desktopMenu;
    QQmlApplicationEngine engine; // last: the views go before what they show
};

MainWindow::MainWindow(AppModel &model, Surroundings surroundings) {
    m_parts = std::make_unique<Parts>(model, surroundings);
    QQmlApplicationEngine &engine = m_parts->engine;
    prepareViewEngine(engine);
    m_parts->appearance->dress(tokens());
    engine.setInitialProperties({
        {u"commandsLogic"_s, QVariant::fromValue(&m_parts->commands)},
        {u"sidebarLogic"_s, QVariant::fromValue(&m_parts->sidebar)},
        {u"detailLogic"_s, QVariant::fromValue(&m_parts->detail)},
        {u"reviewLogic"_s, QVariant::fromValue(&m_parts->review)},
        {u"bannerLogic"_s, QVariant::fromValue(&m_parts->banner)},
        {u"vpnLogic"_s, QVariant::fromValue(&m_parts->vpn)},
        {u"orphansLogic"_s, QVariant::fromValue(&m_parts->orphans)},
        {u"setupLogic"_s, QVariant::fromValue(&m_parts->setup)},
        {u"memory"_s, QVariant::fromValue(&m_parts->memory)},
        {u"desktopMenu"_s, QVariant::fromValue(&m_parts->desktopMenu)},
    });
    engine.load(viewUrl(u"MainWindow"_s));
    if (QQuickWindow *shown = window()) {
        const QSize left = m_parts->memory.windowSize(shown->size(), shown->screen()->availableSize());
        shown->resize(left.expandedTo(shown->minimumSize()));
        shown->show();
        m_parts->desktopMenu.offer(shown->winId(), *shown->property("slimBar").value<QObject *>());
    }
    startTask(&model, [&model](const std::stop_token &) { return model.start(); });
    if (surroundings.offersSetup)
        m_parts->setup.offer();
}

MainWindow::~MainWindow() {
    // A maximised window is as big as its screen: that is no size to come back to.
    if (const QQuickWindow *left = window(); left && left->windowStates() == Qt::WindowNoState)
        m_parts->memory.setWindowSize(left->size());
}

QQuickWindow *MainWindow::window() const {
    return qobject_cast<QQuickWindow *>(m_parts->engine.rootObjects().value(0));
}

void MainWindow::bringToFront() const {
    QQuickWindow *const shown = window();
    if (!shown)
        return;
    shown->setWindowStates(shown->windowStates() & ~Qt::WindowMinimized);
    shown->raise();
    shown->requestActivate();
}

TokensSingleton &MainWindow::tokens() const {
    return tokensOf(m_parts->engine);
}

} // namespace zelk

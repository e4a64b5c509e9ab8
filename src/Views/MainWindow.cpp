#include "Views/MainWindow.h"

#include "Styling/TokensSingleton.h"
#include "Support/Task.h"
#include "Views/BannerLogic.h"
#include "Views/CommandsLogic.h"
#include "Views/DetailLogic.h"
#include "Views/ReviewLogic.h"
#include "Views/SidebarLogic.h"
#include "Views/ViewEngine.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

struct MainWindow::Parts {
    explicit Parts(AppModel &model)
        : commands(model), sidebar(model), detail(model), review(model), banner(*model.sync()) {}

    CommandsLogic commands;
    SidebarLogic sidebar;
    DetailLogic detail;
    ReviewLogic review;
    BannerLogic banner;
    QQmlApplicationEngine engine; // last: the views go before what they show
};

MainWindow::MainWindow(AppModel &model) {
    m_parts = std::make_unique<Parts>(model);
    QQmlApplicationEngine &engine = m_parts->engine;
    prepareViewEngine(engine);
    engine.setInitialProperties({
        {u"commandsLogic"_s, QVariant::fromValue(&m_parts->commands)},
        {u"sidebarLogic"_s, QVariant::fromValue(&m_parts->sidebar)},
        {u"detailLogic"_s, QVariant::fromValue(&m_parts->detail)},
        {u"reviewLogic"_s, QVariant::fromValue(&m_parts->review)},
        {u"bannerLogic"_s, QVariant::fromValue(&m_parts->banner)},
    });
    engine.load(viewUrl(u"MainWindow"_s));
    if (QQuickWindow *shown = window())
        shown->show();
    startTask(&model, [&model](const std::stop_token &) { return model.start(); });
}

MainWindow::~MainWindow() = default;

QQuickWindow *MainWindow::window() const {
    return qobject_cast<QQuickWindow *>(m_parts->engine.rootObjects().value(0));
}

TokensSingleton &MainWindow::tokens() const {
    return tokensOf(m_parts->engine);
}

} // namespace zelk

#include "Views/MainWindow.h"

#include "Styling/Symbols.h"
#include "Styling/TokensSingleton.h"
#include "Support/Task.h"
#include "Views/Appearance.h"
#include "Views/BannerLogic.h"
#include "Views/CommandsLogic.h"
#include "Views/DetailLogic.h"
#include "Views/OrphansLogic.h"
#include "Views/SidebarLogic.h"
#include "Views/VPNLogic.h"

#include <QCoreApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

extern void qml_register_types_zelk();

namespace zelk {

struct MainWindow::Parts {
    Parts(AppModel &model, const Surroundings &surroundings)
        : commands(model, surroundings.files, surroundings.openUrl), sidebar(model), detail(model), banner(model),
          vpn(model, surroundings.clock), orphans(model, surroundings.files),
          appearance(surroundings.desktop, surroundings.defaults) {}

    CommandsLogic commands;
    SidebarLogic sidebar;
    DetailLogic detail;
    BannerLogic banner;
    VPNLogic vpn;
    OrphansLogic orphans;
    Appearance appearance;
    QQmlApplicationEngine engine; // last: the views go before what they show
};

namespace {

// The plural forms of English, by name: the C locale has no language that would lead to them.
void installPlurals() {
    static QTranslator english;
    if (english.isEmpty() && english.load(u":/zelk/i18n/zelk_en.qm"_s))
        QCoreApplication::installTranslator(&english);
}

} // namespace

MainWindow::MainWindow(AppModel &model, Surroundings surroundings) {
    qml_register_types_zelk();
    installPlurals();
    m_parts = std::make_unique<Parts>(model, surroundings);
    QQmlApplicationEngine &engine = m_parts->engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(u"symbol"_s, new Symbols::Provider);
    m_parts->appearance.dress(tokens());
    engine.setInitialProperties({
        {u"commandsLogic"_s, QVariant::fromValue(&m_parts->commands)},
        {u"sidebarLogic"_s, QVariant::fromValue(&m_parts->sidebar)},
        {u"detailLogic"_s, QVariant::fromValue(&m_parts->detail)},
        {u"bannerLogic"_s, QVariant::fromValue(&m_parts->banner)},
        {u"vpnLogic"_s, QVariant::fromValue(&m_parts->vpn)},
        {u"orphansLogic"_s, QVariant::fromValue(&m_parts->orphans)},
    });
    engine.load(QUrl(u"qrc:/qt/qml/zelk/MainWindow.qml"_s));
    if (QQuickWindow *shown = window())
        shown->show();
    startTask(&model, [&model](const std::stop_token &) { return model.start(); });
}

MainWindow::~MainWindow() = default;

QQuickWindow *MainWindow::window() const {
    return qobject_cast<QQuickWindow *>(m_parts->engine.rootObjects().value(0));
}

TokensSingleton &MainWindow::tokens() const {
    return *m_parts->engine.singletonInstance<TokensSingleton *>(qmlTypeId("zelk", 1, 0, "Tokens"));
}

} // namespace zelk

#include "Views/Settings/SettingsWindow.h"

#include "Styling/TokensSingleton.h"
#include "Views/Settings/AccountsLogic.h"
#include "Views/Settings/CLIToolLogic.h"
#include "Views/Settings/DiagnosticsLogic.h"
#include "Views/Settings/GeneralLogic.h"
#include "Views/Settings/OutputLogic.h"
#include "Views/Settings/ProxyLogic.h"
#include "Views/Settings/QualityLogic.h"
#include "Views/Settings/SettingsLogic.h"
#include "Views/Settings/SettingsTabs.h"
#include "Views/Settings/SourcesLogic.h"
#include "Views/ViewEngine.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

QUrl view(const QString &name) {
    return viewUrl(u"Settings/"_s + name);
}

} // namespace

struct SettingsWindow::Contents {
    Contents(AppModel &model, const Surroundings &around)
        : general(model, *around.updater, around.appearance, around.defaults), accounts(model), sources(model),
          quality(model), output(model, around.folders), proxy(model), cliTool(model, around.installer),
          diagnostics(model), logic(tabs()) {}

    QList<SettingsTab> tabs() {
        const std::array<QObject *, 8> logics{&general, &accounts, &sources, &quality,
                                              &output,  &proxy,    &cliTool, &diagnostics};
        QList<SettingsTab> made;
        for (std::size_t i = 0; const SettingsTabFace &face : settingsTabFaces())
            made += {face.label, face.symbol, view(face.view), logics.at(i++)};
        return made;
    }

    GeneralLogic general;
    AccountsLogic accounts;
    SourcesLogic sources;
    QualityLogic quality;
    OutputLogic output;
    ProxyLogic proxy;
    CLIToolLogic cliTool;
    DiagnosticsLogic diagnostics;
    SettingsLogic logic;
    std::unique_ptr<QQuickWindow> window; // another with each opening; last: it goes before what it shows
};

SettingsWindow::SettingsWindow(AppModel &model, Surroundings surroundings)
    : m_model(model), m_surroundings(std::move(surroundings)) {}

SettingsWindow::~SettingsWindow() = default;

QQuickWindow *SettingsWindow::window() const {
    return m_contents && m_contents->window && m_contents->window->isVisible() ? m_contents->window.get() : nullptr;
}

TokensSingleton &SettingsWindow::tokens() const {
    return tokensOf(*m_engine);
}

void SettingsWindow::open() {
    if (!window())
        make();
    QQuickWindow *const opened = m_contents->window.get();
    if (!opened)
        return;
    if (m_place && !opened->isVisible())
        opened->setPosition(*m_place);
    opened->setWindowStates(opened->windowStates() & ~Qt::WindowMinimized);
    opened->show();
    opened->raise();
    opened->requestActivate();
}

void SettingsWindow::make() {
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        prepareViewEngine(*m_engine);
        m_surroundings.appearance->dress(tokens());
        m_contents = std::make_unique<Contents>(m_model, m_surroundings);
    }
    m_contents->window.reset();
    QQmlComponent component(m_engine.get(), view(u"SettingsView"_s));
    // 6.4 looks into a component that failed to load.
    std::unique_ptr<QObject> made(component.isReady() ? component.createWithInitialProperties(
                                                            {{u"logic"_s, QVariant::fromValue(&m_contents->logic)}})
                                                      : nullptr);
    auto *const window = qobject_cast<QQuickWindow *>(made.get());
    if (!window) {
        qWarning("%s", qUtf8Printable(component.errorString()));
        return;
    }
    static_cast<void>(made.release());
    m_contents->window.reset(window);
    window->setTransientParent(&m_none);
    QObject::connect(window, &QWindow::visibleChanged, &m_contents->logic, [this](bool visible) {
        if (!visible)
            leave();
    });
    if (SettingsStore *const settings = m_model.settings())
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
}

void SettingsWindow::leave() {
    m_place = m_contents->window->position();
    m_contents->accounts.leave();
    m_contents->proxy.leave();
}

} // namespace zelk

#include "Views/DialogHost.h"

#include "Views/Appearance.h"
#include "Views/ViewEngine.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <algorithm>
#include <utility>

namespace zelk {

DialogHost::DialogHost(std::shared_ptr<Appearance> appearance) : m_appearance(std::move(appearance)) {}

DialogHost::~DialogHost() = default;

QQmlEngine &DialogHost::engine() {
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        prepareViewEngine(*m_engine);
        if (m_appearance)
            m_appearance->dress(tokensOf(*m_engine));
    }
    return *m_engine;
}

std::unique_ptr<QQuickWindow> DialogHost::make(const QString &view, const QVariantMap &properties) {
    QQmlComponent component(&engine(), viewUrl(view));
    // 6.4 looks into a component that failed to load.
    std::unique_ptr<QObject> made(component.isReady() ? component.createWithInitialProperties(properties) : nullptr);
    auto *window = qobject_cast<QQuickWindow *>(made.get());
    if (!window) {
        qWarning("%s", qUtf8Printable(component.errorString()));
        return {};
    }
    made.release();
    return std::unique_ptr<QQuickWindow>(window);
}

QWindow *DialogHost::front(const QQuickWindow &except) {
    QWindow *const focused = QGuiApplication::focusWindow();
    if (focused && focused != &except)
        return focused;
    const auto windows = QGuiApplication::topLevelWindows();
    const auto found =
        std::ranges::find_if(windows, [&except](const QWindow *each) { return each != &except && each->isVisible(); });
    return found == windows.end() ? &m_none : *found;
}

void DialogHost::present(QQuickWindow &window) {
    if (!window.isVisible())
        window.setTransientParent(front(window));
    window.show();
    window.raise();
    window.requestActivate();
}

TokensSingleton &DialogHost::tokens() {
    return tokensOf(engine());
}

} // namespace zelk

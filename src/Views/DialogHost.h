#pragma once

#include <QVariantMap>
#include <QWindow>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace zelk {

class Appearance;
class TokensSingleton;

// Makes the windows that stand beside the main window, or before there is one: they have an engine of their own, which
// is there from the first of them. It outlives the windows that it made.
class DialogHost {
public:
    // Its windows look as that says, which outlives them; without one, as the platform's palette does.
    explicit DialogHost(std::shared_ptr<Appearance> appearance = {});
    ~DialogHost();
    Q_DISABLE_COPY_MOVE(DialogHost)

    // The window of that view, such as "QuestionDialog", not shown yet. Null only when the view can't be loaded, with
    // what is wrong in the log: a broken build.
    std::unique_ptr<QQuickWindow> make(const QString &view, const QVariantMap &properties);
    // Shows it before the window that the user is in, or before any that is there; or brings it to the front. The
    // application ends with its main window all the same, and never with a window of these.
    void present(QQuickWindow &window);

    // The measures and colours that these windows' views read.
    TokensSingleton &tokens();

private:
    QQmlEngine &engine();
    QWindow *front(const QQuickWindow &except);

    const std::shared_ptr<Appearance> m_appearance;
    std::unique_ptr<QQmlEngine> m_engine;
    // Stands in where there is no window to stand before, never shown: the end of the application is tied to the
    // windows that stand before none.
    QWindow m_none;
};

} // namespace zelk

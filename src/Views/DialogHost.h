#pragma once

#include <QVariantMap>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace zelk {

class TokensSingleton;

// Makes the windows that stand beside the main window, or before there is one: they have an engine of their own, which
// is there from the first of them. It outlives the windows that it made.
class DialogHost {
public:
    DialogHost();
    ~DialogHost();
    Q_DISABLE_COPY_MOVE(DialogHost)

    // The window of that view, such as "QuestionDialog", not shown yet. Null only when the view can't be loaded, with
    // what is wrong in the log: a broken build.
    std::unique_ptr<QQuickWindow> make(const QString &view, const QVariantMap &properties);
    // Shows it before the window that the user is in; or brings it to the front.
    static void present(QQuickWindow &window);

    // The measures and colours that these windows' views read.
    TokensSingleton &tokens();

private:
    QQmlEngine &engine();

    std::unique_ptr<QQmlEngine> m_engine;
};

} // namespace zelk

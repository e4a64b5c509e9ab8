#pragma once

#include "Views/DialogHost.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QTimer>

#include <functional>

namespace zelk {

// Dialogs that no window stands behind, and hands to use them with.
class DialogBench {
public:
    // The dialogs of that name in view, in the order of their making.
    static QList<QQuickWindow *> all(const char *objectName) {
        QList<QQuickWindow *> found;
        const auto windows = QGuiApplication::topLevelWindows();
        for (QWindow *each : windows) {
            if (each->isVisible() && each->objectName() == QLatin1StringView(objectName))
                found.append(qobject_cast<QQuickWindow *>(each));
        }
        return found;
    }
    static int count(const char *objectName) { return static_cast<int>(all(objectName).size()); }
    // The first of them; null without one.
    static QQuickWindow *shown(const char *objectName) { return all(objectName).value(0); }
    static QQuickItem *item(const QQuickWindow *window, const char *objectName) {
        return find(window->contentItem(), QLatin1StringView(objectName));
    }
    static void click(QQuickWindow *window, const char *objectName) {
        const QQuickItem *const target = item(window, objectName);
        QVERIFY2(target, objectName);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const QPointF middle = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
        QTest::mouseClick(window, Qt::LeftButton, {}, middle.toPoint());
    }
    // Presses as a screen reader does.
    static bool press(QQuickItem *target) {
        QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(target);
        QAccessibleActionInterface *const actions = interface ? interface->actionInterface() : nullptr;
        const QString &press = QAccessibleActionInterface::pressAction();
        if (!actions || !actions->actionNames().contains(press))
            return false;
        actions->doAction(press);
        return true;
    }
    // Whether the application ends by itself after `step`, as it does with its last window; `patience` in milliseconds
    // is what it is given for that.
    static bool endsAfter(const std::function<void()> &step, int patience = 50) {
        constexpr int stopped = 7;
        QTimer stop;
        stop.setSingleShot(true);
        QObject::connect(&stop, &QTimer::timeout, qApp, [] { QCoreApplication::exit(stopped); });
        QTimer::singleShot(0, &stop, [&step, &stop, patience] {
            step();
            stop.start(patience);
        });
        return QGuiApplication::exec() != stopped;
    }
    static constexpr int untilItEnds = 10000;
    static QString text(const QQuickWindow *window, const char *objectName) {
        const QQuickItem *const target = item(window, objectName);
        return target ? target->property("text").toString() : QString();
    }

    DialogHost host;

private:
    static QQuickItem *find(QQuickItem *root, QLatin1StringView name) {
        if (!root->isVisible())
            return nullptr;
        if (root->objectName() == name)
            return root;
        const auto children = root->childItems();
        for (QQuickItem *child : children) {
            if (QQuickItem *const found = find(child, name))
                return found;
        }
        return nullptr;
    }
};

} // namespace zelk

#pragma once

#include "Views/DialogHost.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

namespace zelk {

// Dialogs that no window stands behind, and hands to use them with.
class DialogBench {
public:
    // The dialog of that name in view; null without one.
    static QQuickWindow *shown(const char *objectName) {
        const auto windows = QGuiApplication::topLevelWindows();
        for (QWindow *each : windows) {
            if (each->isVisible() && each->objectName() == QLatin1StringView(objectName))
                return qobject_cast<QQuickWindow *>(each);
        }
        return nullptr;
    }
    static int count(const char *objectName) {
        const auto windows = QGuiApplication::topLevelWindows();
        return static_cast<int>(std::ranges::count_if(windows, [objectName](const QWindow *each) {
            return each->isVisible() && each->objectName() == QLatin1StringView(objectName);
        }));
    }
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

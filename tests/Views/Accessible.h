#pragma once

#include <QAccessible>
#include <QQuickItem>

namespace zelk {

// Presses through the interface that a screen reader uses.
inline bool press(QQuickItem *item, const QString &action = QAccessibleActionInterface::pressAction()) {
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    QAccessibleActionInterface *actions = interface ? interface->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(action))
        return false;
    actions->doAction(action);
    return true;
}

// What a screen reader calls an item, or says of it.
inline QString spoken(QQuickItem *item, QAccessible::Text text = QAccessible::Name) {
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(text) : QString();
}

} // namespace zelk

#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

namespace zelk {

// Tells which way the focus comes to an item: its ring is for the keyboard alone.
class FocusWatch : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *item READ item WRITE setItem NOTIFY itemChanged)

public:
    using QObject::QObject;

    QQuickItem *item() const { return m_item; }
    void setItem(QQuickItem *item);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void itemChanged();
    // Not for what comes back from a menu or another window: that changes nothing.
    void came(bool byKeyboard);

private:
    QPointer<QQuickItem> m_item;
};

} // namespace zelk

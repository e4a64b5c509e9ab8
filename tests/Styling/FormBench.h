#pragma once

#include "Styling/TokensSingleton.h"
#include "Views/Accessible.h"
#include "Views/ViewEngine.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace zelk {

// A window that holds what a piece of QML describes, and hands to use it with.
class FormBench {
public:
    explicit FormBench(const QByteArray &qml) {
        prepareViewEngine(m_engine);
        QQmlComponent component(&m_engine);
        component.setData("pragma ComponentBehavior: Bound\nimport QtQuick\nimport zelk\n" + qml, QUrl());
        window.resize(400, 300);
        show(component, {});
    }
    // The same with a view of ours, as wide as the window.
    FormBench(const QString &view, const QVariantMap &properties, QSize size) {
        prepareViewEngine(m_engine);
        QQmlComponent component(&m_engine, viewUrl(view));
        window.resize(size);
        show(component, properties);
        m_root->setSize(size);
        drawFrame();
    }

    QQuickItem *root() const { return m_root.get(); }
    TokensSingleton &tokens() { return tokensOf(m_engine); }
    QQuickItem *item(const char *objectName) const { return find(m_root.get(), QLatin1StringView(objectName)); }
    // What the QML keeps of what it was told.
    QVariant said(const char *property) const { return m_root->property(property); }

    // Everything in view that answers to `wanted`, in menus and notes too.
    template<class Wanted>
    QList<QQuickItem *> shown(const Wanted &wanted) const {
        QList<QQuickItem *> found;
        collect(window.contentItem(), wanted, found);
        return found;
    }

    static QPoint middle(const QQuickItem *item) {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    // Lets everything come to its place, as it has for whoever looks at the window.
    void drawFrame() {
        QSignalSpy drawn(&window, &QQuickWindow::frameSwapped);
        window.update();
        drawn.wait();
    }
    void click(const QQuickItem *item) { QTest::mouseClick(&window, Qt::LeftButton, {}, middle(item)); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&window, key, modifiers); }
    void type(const QString &text) {
        for (const QChar c : text)
            QTest::keyClick(&window, c.toLatin1());
    }
    // The colour in the middle of that place of an item.
    QColor pixel(const QQuickItem *item, QPointF at) {
        const QImage shot = window.grabWindow();
        const QPointF place = item->mapToScene(at) * window.effectiveDevicePixelRatio();
        return shot.pixelColor(place.toPoint());
    }
    // Everything a screen reader finds under an item, named, in its order.
    static QStringList names(QObject *root) {
        QStringList result;
        gather(QAccessible::queryAccessibleInterface(root), result);
        return result;
    }
    static QAccessible::State state(QQuickItem *item) {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
        return interface ? interface->state() : QAccessible::State();
    }
    static QAccessible::Role role(QQuickItem *item) {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
        return interface ? interface->role() : QAccessible::NoRole;
    }

    QQuickWindow window;

private:
    void show(QQmlComponent &component, const QVariantMap &properties) {
        // 6.4 looks into a component that failed to load.
        if (component.isReady())
            m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
        if (!m_root)
            qFatal("%s", qUtf8Printable(component.errorString()));
        m_root->setParentItem(window.contentItem());
        window.show();
        window.requestActivate();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("The window isn't active");
    }
    template<class Wanted>
    static void collect(QQuickItem *from, const Wanted &wanted, QList<QQuickItem *> &found) {
        if (!from->isVisible())
            return;
        if (wanted(from))
            found += from;
        const auto children = from->childItems();
        for (QQuickItem *child : children)
            collect(child, wanted, found);
    }
    static void gather(QAccessibleInterface *interface, QStringList &result) {
        if (!interface)
            return;
        if (const QString name = interface->text(QAccessible::Name); !name.isEmpty() && !interface->state().invisible)
            result += name;
        for (int i = 0; i < interface->childCount(); ++i)
            gather(interface->child(i), result);
    }
    static QQuickItem *find(QQuickItem *from, QLatin1StringView name) {
        if (from->objectName() == name)
            return from;
        const auto children = from->childItems();
        for (QQuickItem *child : children) {
            if (QQuickItem *found = find(child, name))
                return found;
        }
        return nullptr;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace zelk

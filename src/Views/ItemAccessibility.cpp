#include "Views/ItemAccessibility.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QPointer>
#include <QQuickItem>
#include <QScopedValueRollback>

#include <utility>

namespace zelk {

namespace {

// Qt's own interface of an item, and what that leaves out. Both are the accessibility cache's, which lets go of them
// together, with the item.
class ItemInterface final : public QAccessibleInterface, public QAccessibleValueInterface {
public:
    ItemInterface(QAccessibleInterface &own, QQuickItem &item) : m_own(own), m_item(&item) {}

    bool isValid() const override { return m_item && m_own.isValid(); }
    QObject *object() const override { return m_item; }
    QWindow *window() const override { return m_own.window(); }
    QList<std::pair<QAccessibleInterface *, QAccessible::Relation>>
    relations(QAccessible::Relation match) const override {
        return m_own.relations(match);
    }
    QAccessibleInterface *focusChild() const override { return m_own.focusChild(); }
    QAccessibleInterface *childAt(int x, int y) const override { return m_own.childAt(x, y); }
    QAccessibleInterface *parent() const override { return m_own.parent(); }
    QAccessibleInterface *child(int index) const override { return m_own.child(index); }
    int childCount() const override { return m_own.childCount(); }
    int indexOfChild(const QAccessibleInterface *child) const override { return m_own.indexOfChild(child); }
    QString text(QAccessible::Text which) const override {
        const QString said = m_own.text(which);
        return which == QAccessible::Value && m_own.state().passwordEdit ? QString(said.size(), u'•') : said;
    }
    void setText(QAccessible::Text which, const QString &text) override { m_own.setText(which, text); }
    QRect rect() const override { return m_own.rect(); }
    QAccessible::Role role() const override { return m_own.role(); }
    QColor foregroundColor() const override { return m_own.foregroundColor(); }
    QColor backgroundColor() const override { return m_own.backgroundColor(); }
    QAccessible::State state() const override {
        QAccessible::State state = m_own.state();
        if (m_item && !m_item->isEnabled()) {
            state.disabled = true;
            state.focusable = false;
        }
        return state;
    }
    void virtual_hook(int id, void *data) override { m_own.virtual_hook(id, data); }
    void *interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && isBar())
            return static_cast<QAccessibleValueInterface *>(this);
        return m_own.interface_cast(type);
    }

    QVariant currentValue() const override { return m_item->property("value"); }
    void setCurrentValue(const QVariant &) override {} // it shows, and isn't set
    QVariant maximumValue() const override { return 1.0; }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return 0.0; }

private:
    bool isBar() const {
        return m_item && m_own.role() == QAccessible::ProgressBar && m_item->property("value").isValid();
    }

    QAccessibleInterface &m_own;
    const QPointer<QQuickItem> m_item;
};

void tellOfEnabling(QQuickItem *item) {
    QAccessible::State changed;
    changed.disabled = true;
    changed.focusable = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}

QAccessibleInterface *interfaceOf(const QString &, QObject *object) {
    // Qt's own is asked for in the same way, past this.
    static bool asksQt = false;
    auto *const item = qobject_cast<QQuickItem *>(object);
    if (!item || asksQt)
        return nullptr;
    const QScopedValueRollback asking(asksQt, true);
    QAccessibleInterface *const own = QAccessible::queryAccessibleInterface(object);
    if (!own)
        return nullptr;
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] { tellOfEnabling(item); });
    return new ItemInterface(*own, *item);
}

} // namespace

void installItemAccessibility() {
    static bool isInstalled = false;
    if (!std::exchange(isInstalled, true))
        QAccessible::installFactory(interfaceOf);
}

} // namespace zelk

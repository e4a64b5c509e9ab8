#include "Views/DesktopMenu.h"

#include <QQmlListReference>
#include <QQmlProperty>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

// The types of the controls are Qt's own; what they have for QML is what can be asked of them.
QObjectList listOf(QObject &owner, const char *property) {
    const QQmlListReference list(&owner, property);
    QObjectList all;
    for (qsizetype i = 0; i < list.count(); ++i)
        all.append(list.at(i));
    return all;
}

QObject *actionOf(const QObject &entry) {
    return entry.property("action").value<QObject *>();
}

// An entry of a bar that is out of reach is as well.
MenuItem entryOf(const QObject &bar, QObject &action) {
    return {.title = action.property("text").toString(),
            .keys = QKeySequence(action.property("shortcut").toString(), QKeySequence::PortableText),
            .enabled = bar.property("enabled").toBool() && action.property("enabled").toBool(),
            .pick = [within = QPointer(&bar), picked = QPointer(&action)] {
                if (within && within->property("enabled").toBool() && picked)
                    QMetaObject::invokeMethod(picked, "trigger");
            }};
}

MenuItem menuOf(const QObject &bar, QObject &menu) {
    MenuItem made{.kind = MenuItem::Kind::menu, .title = menu.property("title").toString()};
    for (const QObject *each : listOf(menu, "contentData")) {
        if (QObject *const action = actionOf(*each))
            made.items.append(entryOf(bar, *action));
        else if (each->inherits("QQuickMenuSeparator"))
            made.items.append({.kind = MenuItem::Kind::divider});
    }
    return made;
}

QList<MenuItem> menusOf(QObject &bar) {
    QList<MenuItem> menus;
    for (QObject *each : listOf(bar, "menus"))
        menus.append(menuOf(bar, *each));
    return menus;
}

} // namespace

DesktopMenu::DesktopMenu(std::shared_ptr<GlobalMenu> menu) : m_menu(std::move(menu)) {
    if (m_menu)
        connect(m_menu.get(), &GlobalMenu::takenChanged, this, &DesktopMenu::takenChanged);
}

DesktopMenu::~DesktopMenu() {
    if (m_menu)
        m_menu->withdraw();
}

void DesktopMenu::offer(WId window, QObject &bar) {
    if (!m_menu)
        return;
    m_bar = &bar;
    QQmlProperty(&bar, u"enabled"_s).connectNotifySignal(this, SLOT(update()));
    for (QObject *menu : listOf(bar, "menus")) {
        for (const QObject *each : listOf(*menu, "contentData")) {
            if (QObject *const action = actionOf(*each))
                follow(*action);
        }
    }
    m_menu->offer(window, menusOf(bar));
}

void DesktopMenu::follow(QObject &action) {
    for (const auto &property : {u"text"_s, u"enabled"_s, u"shortcut"_s})
        QQmlProperty(&action, property).connectNotifySignal(this, SLOT(update()));
}

void DesktopMenu::update() {
    if (m_bar)
        m_menu->update(menusOf(*m_bar));
}

} // namespace zelk

#pragma once

#include "Platform/GlobalMenu.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// Gives the menus of a menu bar to the desktop's own bar, where there is one: the same menus in the same order over the
// same actions.
class DesktopMenu : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    // Whether the desktop shows them, so that the bar itself needn't.
    Q_PROPERTY(bool taken READ isTaken NOTIFY takenChanged)

public:
    // Without a desktop's menu nothing is ever taken.
    explicit DesktopMenu(std::shared_ptr<GlobalMenu> menu);
    ~DesktopMenu() override;
    Q_DISABLE_COPY_MOVE(DesktopMenu)

    bool isTaken() const { return m_menu && m_menu->isTaken(); }
    // Offers the menus of `bar`, a MenuBar of Qt Quick, as those of that window. Which entries there are, and in which
    // order, is as it is now; what becomes of their actions is followed.
    void offer(WId window, QObject &bar);

Q_SIGNALS:
    void takenChanged();

private Q_SLOTS:
    void update();

private:
    void follow(QObject &action);

    const std::shared_ptr<GlobalMenu> m_menu;
    QPointer<QObject> m_bar;
};

} // namespace zelk

// A menu that drops from the menu bar or opens over a row.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.Menu {
    id: menu

    implicitWidth: Tokens.size.menuWidth
    implicitHeight: contentItem.implicitHeight + menu.topPadding + menu.bottomPadding
    margins: Tokens.space.xs
    padding: Tokens.space.xs
    overlap: 1

    delegate: MenuEntry {}

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }

    background: Rectangle {
        color: Tokens.color.card
        radius: Tokens.radius.control
        border.width: Tokens.size.hairline
        border.color: Tokens.color.divider
    }
}

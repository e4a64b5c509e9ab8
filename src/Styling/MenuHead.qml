// The title of a menu in the menu bar.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.MenuBarItem {
    id: head

    implicitWidth: contentItem.implicitWidth + 2 * Tokens.space.md
    implicitHeight: Tokens.size.menuBar
    font: Tokens.font.body
    Accessible.name: head.text.replace("&", "")
    Accessible.onPressAction: head.triggered()

    contentItem: TextLine {
        readable: false
        horizontalAlignment: Text.AlignHCenter
        text: head.text.replace("&", "")
        font: head.font
    }

    background: Rectangle {
        radius: Tokens.radius.chip
        color: head.highlighted ? Tokens.color.pressed : Qt.alpha(Tokens.color.pressed, 0)
    }
}

// The title of a menu in the menu bar. The title itself speaks for it: the control would call itself a menu bar.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.MenuBarItem {
    id: head

    implicitWidth: contentItem.implicitWidth + 2 * Tokens.space.md
    implicitHeight: Tokens.size.menuBar
    font: Tokens.font.body
    Accessible.ignored: true

    contentItem: TextLine {
        horizontalAlignment: Text.AlignHCenter
        text: head.text.replace("&", "")
        font: head.font
        Accessible.role: Accessible.MenuItem
        Accessible.onPressAction: {
            if (head.enabled)
                head.triggered();
        }
    }

    background: Rectangle {
        radius: Tokens.radius.chip
        color: head.highlighted ? Tokens.color.pressed : Qt.alpha(Tokens.color.pressed, 0)
    }
}

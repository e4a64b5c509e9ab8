// The line between groups of menu entries.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.MenuSeparator {
    id: divider

    implicitHeight: Tokens.space.sm + Tokens.size.hairline

    contentItem: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: Tokens.hairline(Screen.devicePixelRatio)
            color: Tokens.color.divider
        }
    }
}

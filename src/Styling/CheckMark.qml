// The check box.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

MarkedChoice {
    id: box

    signal switched(bool on)

    markRadius: Tokens.space.xs
    onActivated: box.switched(!box.on)

    Rectangle {
        anchors.fill: parent
        radius: box.markRadius
        color: box.on ? Tokens.color.accentFill : Tokens.color.field
        border.width: box.on ? 0 : Tokens.size.hairline
        border.color: Tokens.color.secondary

        Symbol {
            anchors.centerIn: parent
            visible: box.on
            name: "check"
            color: Tokens.color.onAccent
            size: Tokens.size.smallSymbol
        }
    }
}

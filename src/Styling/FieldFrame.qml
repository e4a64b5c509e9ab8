// The frame of a text field: its stroke turns to the accent under a halo while somebody types in it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: frame

    required property bool focused

    radius: Tokens.radius.control
    color: Tokens.color.field
    border.width: Tokens.size.hairline
    border.color: frame.focused ? Tokens.color.accent : Tokens.color.fieldStroke

    Rectangle {
        anchors.fill: parent
        anchors.margins: -border.width
        visible: frame.focused
        radius: parent.radius + border.width
        color: Qt.alpha(Tokens.color.fieldHalo, 0)
        border.width: Tokens.size.focusRing + Tokens.size.focusGap
        border.color: Tokens.color.fieldHalo
    }
}

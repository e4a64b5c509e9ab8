// The ring around the control that the keyboard stands on.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: ring

    property int controlRadius: Tokens.radius.control

    anchors.fill: parent
    anchors.margins: -(Tokens.size.focusGap + Tokens.size.focusRing)
    radius: ring.controlRadius + Tokens.size.focusGap + Tokens.size.focusRing
    color: Qt.alpha(Tokens.color.accent, 0)
    border.width: Tokens.size.focusRing
    border.color: Tokens.color.accent
}

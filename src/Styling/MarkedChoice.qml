// A mark with its text beside it, which is part of what is pressed. Without a text the mark stands alone.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ChoiceControl {
    id: control

    property string text: ""
    property font font: Tokens.font.body
    // What stands at the left, as high and wide as a mark.
    default property alias mark: place.data
    property int markRadius: Tokens.radius.chip

    label: control.text
    implicitWidth: words.visible ? words.x + words.implicitWidth : place.width
    implicitHeight: Math.max(place.height, words.visible ? words.implicitHeight : 0)

    Item {
        id: place

        anchors.verticalCenter: parent.verticalCenter
        width: Tokens.size.check
        height: width
    }

    Rectangle {
        anchors.fill: place
        radius: control.markRadius
        visible: control.hovered || control.pressed
        color: control.pressed ? Tokens.color.pressed : Tokens.color.hover
    }

    FocusRing {
        anchors.fill: words.visible ? parent : place
        visible: control.activeFocus
        controlRadius: control.markRadius
    }

    TextLine {
        id: words

        x: place.width + Tokens.space.sm
        width: parent.width - x
        anchors.verticalCenter: parent.verticalCenter
        visible: control.text !== ""
        readable: false
        text: control.text
        font: control.font
    }
}

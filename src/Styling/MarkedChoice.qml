// A mark with its text beside it, which is part of what is pressed. Without a text the mark stands alone.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ChoiceControl {
    id: control

    property string text: ""
    property font font: Tokens.font.body
    // What stands before the text, as high and wide as a mark.
    default property alias mark: place.data
    property int markRadius: Tokens.radius.chip

    label: control.text
    implicitWidth: words.visible ? Math.ceil(place.width + words.anchors.leftMargin + words.implicitWidth) : place.width
    implicitHeight: Math.max(place.height, words.visible ? words.height : 0)

    Item {
        id: place

        anchors.left: parent.left
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

    Paragraph {
        id: words

        anchors.left: place.right
        anchors.leftMargin: Tokens.space.sm
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: control.text !== ""
        text: control.text
        color: Tokens.color.primary
        font: control.font
        Accessible.ignored: true
    }
}

// A folder's path, and the button that chooses another.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: line

    required property string path
    // What stands there while there is no path.
    property string placeholder: ""
    property string symbol: ""
    property string buttonText: qsTr("Change…")
    property bool small: false

    signal choosing

    implicitWidth: mark.width + words.implicitWidth + button.width + 2 * Tokens.space.sm
    implicitHeight: Math.max(button.height, words.implicitHeight)

    Symbol {
        id: mark

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: line.symbol !== ""
        width: visible ? size : 0
        name: line.symbol
    }

    TextLine {
        id: words

        objectName: "folderPath"
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: mark.right
        anchors.leftMargin: mark.visible ? Tokens.space.sm : 0
        anchors.right: button.left
        anchors.rightMargin: Tokens.space.md
        elide: Text.ElideMiddle
        text: line.path === "" ? line.placeholder : line.path
        color: line.path === "" ? Tokens.color.secondary : Tokens.color.primary

        HoverHandler {
            id: hover
        }

        Hint {
            visible: hover.hovered && words.truncated
            text: line.path
        }
    }

    PushButton {
        id: button

        objectName: "folderChoose"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        small: line.small
        text: line.buttonText
        onClicked: line.choosing()
    }
}

// One row of what was chosen: what it is about, and the choice.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: recap

    required property var row // a RecapFace
    property bool divided: false

    signal changing

    width: parent?.width ?? 0
    implicitHeight: Math.max(Tokens.size.recapRow, words.height + 2 * Tokens.space.sm)

    Rectangle {
        anchors.left: name.left
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: recap.divided
        color: Tokens.color.divider
    }

    Symbol {
        id: mark

        objectName: "recapSymbol"
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        name: recap.row.symbol
        size: Tokens.size.labelSymbol
    }

    TextLine {
        id: name

        anchors.left: mark.right
        anchors.leftMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        text: recap.row.title
        font: Tokens.font.callout
    }

    // A path is cut in its middle; whatever else was chosen is read whole.
    Text {
        id: words

        objectName: "recapValue"
        anchors.left: name.right
        anchors.leftMargin: Tokens.space.lg
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: button.visible ? Tokens.space.md : Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        textFormat: Text.PlainText
        wrapMode: recap.row.isFolder ? Text.NoWrap : Text.Wrap
        elide: recap.row.isFolder ? Text.ElideMiddle : Text.ElideNone
        text: recap.row.value
        color: Tokens.color.secondary
        font: Tokens.font.callout
        Accessible.role: Accessible.StaticText
        Accessible.name: words.text
        Accessible.ignored: words.text === ""

        HoverHandler {
            id: hover
        }

        Hint {
            visible: hover.hovered && words.truncated
            text: words.text
        }
    }

    PushButton {
        id: button

        objectName: "recapButton"
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        visible: recap.row.isFolder
        small: true
        text: qsTr("Change…")
        onClicked: recap.changing()
    }
}

// One row of what was chosen: what it is about, and the choice.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property string symbol
    required property string title
    required property string value
    // Without it there is nothing to be said.
    property bool ok: true
    property bool divided: false
    property int elide: Text.ElideRight
    property string buttonText: ""

    signal activated

    width: parent?.width ?? 0
    implicitHeight: Tokens.size.recapRow

    Rectangle {
        x: name.x
        width: parent.width - x
        height: Tokens.size.hairline
        visible: row.divided
        color: Tokens.color.divider
    }

    Symbol {
        id: mark

        x: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        name: row.symbol
        size: Tokens.size.labelSymbol
    }

    TextLine {
        id: name

        anchors.left: mark.right
        anchors.leftMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        text: row.title
        font: Tokens.font.callout
    }

    TextLine {
        id: words

        objectName: "recapValue"
        anchors.left: name.right
        anchors.leftMargin: Tokens.space.lg
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: button.visible ? Tokens.space.md : Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        elide: row.elide
        text: row.ok ? row.value : qsTr("None yet")
        color: Tokens.color.secondary
        font: Tokens.font.callout

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
        visible: row.buttonText !== ""
        small: true
        text: row.buttonText
        onClicked: row.activated()
    }
}

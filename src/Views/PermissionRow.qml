// One permission: what it is for, where it stands, and the button that gives the other answer.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property var face // a PermissionFace
    property bool divided: false

    signal activated

    implicitHeight: words.height + 2 * Tokens.space.md

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        anchors.right: parent.right
        height: Tokens.hairline(Screen.devicePixelRatio)
        visible: row.divided
        color: Tokens.color.divider
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        y: Tokens.space.md
        anchors.right: button.left
        anchors.rightMargin: Tokens.space.lg
        spacing: Tokens.space.xs

        Paragraph {
            width: parent.width
            text: row.face.name
            color: Tokens.color.primary
            font: Tokens.font.headline
        }

        Paragraph {
            width: parent.width
            text: row.face.explanation
            font: Tokens.font.callout
        }

        StatusPill {
            objectName: "permissionState"
            text: row.face.state
            symbol: row.face.symbol
            ink: Tokens.color.inks[row.face.ink]
            maximumWidth: parent.width
        }
    }

    PushButton {
        id: button

        objectName: "permissionChange"
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        text: row.face.action
        label: qsTr("%1: %2").arg(row.face.name).arg(row.face.action)
        onClicked: row.activated()
    }
}

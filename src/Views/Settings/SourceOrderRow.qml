// A source of audio among those that are tried one after the other, with the switch that says whether it is.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ReorderRow {
    id: row

    required property string name
    required property string blurb
    required property string symbol
    required property bool isEnabled

    signal switched(bool on)

    objectName: "sourceRow"
    label: row.name
    textInset: words.anchors.leftMargin
    implicitHeight: Math.max(Tokens.size.formRowOfTwoLines, words.height + 2 * Tokens.space.sm)

    Symbol {
        id: icon

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        name: row.symbol
        color: row.isEnabled ? Tokens.color.primary : Tokens.color.secondary
        size: Tokens.size.logo
        Accessible.role: Accessible.Graphic
        Accessible.name: row.name
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: icon.width + Tokens.space.lg
        anchors.right: toggle.left
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xxs

        TextLine {
            width: parent.width
            text: row.name
        }

        Paragraph {
            width: parent.width
            text: row.blurb
            font: Tokens.font.caption
        }
    }

    ToggleSwitch {
        id: toggle

        objectName: "sourceSwitch"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        label: qsTr("Enable %1").arg(row.name)
        on: row.isEnabled
        onSwitched: on => row.switched(on)
    }
}

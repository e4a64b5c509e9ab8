// One tool of those that are installed: how it stands, and how far it is.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property var tool // a ToolRowFace
    property bool divided: false

    implicitHeight: words.height + 2 * Tokens.space.md

    Rectangle {
        anchors.left: words.left
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: row.divided
        color: Tokens.color.divider
    }

    Item {
        id: mark

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        width: Tokens.size.toolMark
        height: width

        Symbol {
            objectName: "toolSymbol"
            anchors.centerIn: parent
            name: row.tool.symbol
            color: Tokens.color.inks[row.tool.ink]
            size: Tokens.size.toolSymbol
        }
    }

    Column {
        id: words

        anchors.left: mark.right
        anchors.leftMargin: Tokens.space.md
        anchors.right: parent.right
        anchors.rightMargin: (pill.visible ? pill.width + Tokens.space.lg : 0) + Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xs

        TextLine {
            objectName: "toolName"
            width: parent.width
            text: row.tool.name
            font: Tokens.font.bodyMedium
        }

        ProgressLine {
            objectName: "toolBar"
            anchors.left: parent.left
            width: Math.min(Tokens.size.toolBar, parent.width)
            visible: row.tool.measured
            label: row.tool.name
            value: row.tool.value
            valueText: row.tool.valueText
            animated: true
        }

        Row {
            width: parent.width
            visible: row.tool.busy || row.tool.text !== ""
            spacing: Tokens.space.sm

            Spinner {
                objectName: "toolSpinner"
                anchors.verticalCenter: parent.verticalCenter
                visible: row.tool.busy
                color: Tokens.color.accent
                Accessible.role: Accessible.ProgressBar
                Accessible.name: row.tool.name
                Accessible.description: qsTr("In progress")
            }

            Paragraph {
                objectName: "toolText"
                width: Math.min(implicitWidth, words.width)
                visible: text !== ""
                text: row.tool.text
                color: row.tool.failed ? Tokens.color.red : Tokens.color.secondary
                font: Tokens.font.caption
            }
        }
    }

    StatusPill {
        id: pill

        objectName: "toolPill"
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        visible: row.tool.done
        text: qsTr("Ready")
        symbol: row.tool.symbol
        ink: Tokens.color.inks[row.tool.ink]
    }
}

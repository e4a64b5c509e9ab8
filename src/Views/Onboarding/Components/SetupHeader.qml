// What stands over a screen of the setup: its symbol, its title and in most cases a line about it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: header

    required property var info // a SetupHeaderInfo

    objectName: "setupHeader"
    implicitHeight: Math.max(subtitle.visible ? Tokens.size.setupHeaderTall : Tokens.size.setupHeader,
                             words.height + 2 * Tokens.space.md)

    Symbol {
        id: symbol

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.xl
        anchors.verticalCenter: parent.verticalCenter
        name: header.info.symbol
        color: Tokens.color.accent
        size: Tokens.size.setupSymbol
    }

    Column {
        id: words

        anchors.left: symbol.right
        anchors.leftMargin: Tokens.space.lg
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.xl
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xxs

        TextLine {
            objectName: "setupTitle"
            width: parent.width
            text: header.info.title
            font: Tokens.font.title2
            Accessible.role: Accessible.Heading
        }

        Paragraph {
            id: subtitle

            // Two lines are about as long as each other: no word stands alone in the second.
            readonly property int lines: Math.max(1, Math.ceil(subtitle.implicitWidth / parent.width))

            objectName: "setupSubtitle"
            anchors.left: parent.left
            width: subtitle.lines > 1 ? Math.min(parent.width, Math.ceil(1.15 * subtitle.implicitWidth / subtitle.lines))
                                      : parent.width
            visible: header.info.subtitle !== ""
            text: header.info.subtitle
            lineHeight: 1
            font: Tokens.font.callout
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Tokens.size.hairline
        color: Tokens.color.divider
    }
}

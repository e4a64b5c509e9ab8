// A symbol and a line of text beside it, which may run on.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: label

    required property string symbol
    required property string text
    property color ink: Tokens.color.primary
    property color symbolInk: Tokens.color.accent
    property int symbolSize: Tokens.size.labelSymbol

    implicitWidth: mark.width + Tokens.space.md + words.implicitWidth
    implicitHeight: Math.max(mark.height, words.height)

    Symbol {
        id: mark

        anchors.left: parent.left
        y: Math.round((words.firstLine - height) / 2)
        name: label.symbol
        color: label.symbolInk
        size: label.symbolSize
    }

    Paragraph {
        id: words

        readonly property real firstLine: words.height / Math.max(1, words.lineCount)

        anchors.left: mark.right
        anchors.leftMargin: Tokens.space.md
        width: Math.min(implicitWidth, label.width - mark.width - Tokens.space.md)
        text: label.text
        color: label.ink
        font: Tokens.font.callout
    }
}

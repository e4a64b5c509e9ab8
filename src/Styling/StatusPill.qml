// A state in a word and its symbol, both in the state's colour.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Row {
    id: pill

    required property string text
    required property string symbol
    required property color ink
    property bool prominent: false
    property real maximumWidth: Infinity

    spacing: Tokens.space.xs
    Accessible.role: Accessible.StaticText
    Accessible.name: pill.text

    Symbol {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        name: pill.symbol
        color: pill.ink
        size: Tokens.size.smallSymbol
    }

    TextLine {
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        text: pill.text
        color: pill.ink
        font: pill.prominent ? Tokens.font.captionSemibold : Tokens.font.caption
        width: Math.min(implicitWidth, pill.maximumWidth - mark.width - pill.spacing)
    }
}

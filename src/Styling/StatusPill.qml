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
    readonly property real textRoom: pill.maximumWidth - mark.width - pill.spacing
    // What stands there of the text where there is no room for all of it.
    property string shortText: pill.text

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
        text: pill.shortText
        color: pill.ink
        font: pill.prominent ? Tokens.font.captionSemibold : Tokens.font.caption
        width: Math.min(implicitWidth, pill.textRoom)
    }
}

// A service's mark: its glyph in white on a tile of its colour.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: logo

    required property string symbol
    required property string label
    required property color brand
    property int size: Tokens.size.logo
    property bool readable: true

    width: logo.size
    height: logo.size
    radius: logo.size * Tokens.art.logoRadiusShare
    color: logo.brand
    Accessible.role: Accessible.Graphic
    Accessible.name: logo.label
    Accessible.ignored: !logo.readable

    Symbol {
        anchors.centerIn: parent
        name: logo.symbol
        color: Tokens.color.onAccent
        size: Math.round(logo.size * Tokens.art.logoShare)
    }
}

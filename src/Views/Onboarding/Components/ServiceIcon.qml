// A service's mark: its glyph alone, or in white on a tile of its colour. Without a glyph of its own a symbol stands in.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: icon

    required property string assetName
    required property int size
    required property string fallbackSymbol
    required property string accessibilityName
    property color tint: Tokens.color.primary
    // Transparent for none.
    property color brandChip: Qt.alpha(Tokens.color.window, 0)
    readonly property bool chipped: icon.brandChip.a > 0
    readonly property real glyphSide: icon.chipped ? icon.size * Tokens.art.chipShare : icon.size
    readonly property bool known: Tokens.hasSymbol(icon.assetName)

    width: icon.size
    height: icon.size
    Accessible.role: Accessible.Graphic
    Accessible.name: icon.accessibilityName

    Rectangle {
        anchors.fill: parent
        visible: icon.chipped
        radius: icon.size * Tokens.art.logoRadiusShare
        color: icon.brandChip
    }

    Symbol {
        objectName: "serviceGlyph"
        anchors.centerIn: parent
        name: icon.known ? icon.assetName : icon.fallbackSymbol
        color: icon.chipped ? Tokens.color.onAccent : icon.tint
        size: Math.round(icon.known ? icon.glyphSide : icon.glyphSide * Tokens.art.fallbackShare)
    }
}

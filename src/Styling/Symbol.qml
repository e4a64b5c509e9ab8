// A symbol of the embedded set in a colour.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Image {
    id: symbol

    required property string name
    property color color: Tokens.color.secondary
    property int size: Tokens.size.symbol

    width: symbol.size
    height: symbol.size
    sourceSize.width: symbol.size
    sourceSize.height: symbol.size
    source: Tokens.symbol(symbol.name, symbol.color)
}

// A cover's place: a quiet tile with the symbol of what it covers.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: artwork

    required property string placeholderSymbol
    property int size: Tokens.art.row
    property int cornerRadius: Tokens.radius.chip

    width: artwork.size
    height: artwork.size
    radius: artwork.cornerRadius
    color: Tokens.color.quaternary
    border.width: Tokens.size.hairline
    border.color: Tokens.color.coverStroke

    Symbol {
        anchors.centerIn: parent
        name: artwork.placeholderSymbol
        color: Tokens.color.tertiary
        size: Math.round(artwork.size * Tokens.art.placeholderShare)
    }
}

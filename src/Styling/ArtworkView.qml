// A cover, and until there is one a quiet tile with the symbol of what it covers.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ArtworkPicture {
    id: artwork

    required ref
    required property string placeholderSymbol

    size: Tokens.art.row
    cornerRadius: Tokens.radius.chip
    width: artwork.size
    height: artwork.size
    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        radius: artwork.cornerRadius
        color: artwork.hasImage ? "transparent" : Tokens.color.quaternary
        border.width: Tokens.size.hairline
        border.color: Tokens.color.coverStroke
    }

    Symbol {
        anchors.centerIn: parent
        visible: !artwork.hasImage
        name: artwork.placeholderSymbol
        color: Tokens.color.tertiary
        size: Math.round(artwork.size * Tokens.art.placeholderShare)
    }
}

// One playlist of the sidebar.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SelectableRow {
    id: row

    readonly property int indent: row.entry.depth * Tokens.size.depthIndent

    objectName: "playlistRow"

    ArtworkView {
        id: cover

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.xxl + Tokens.space.xxs + row.indent
        anchors.verticalCenter: parent.verticalCenter
        size: Tokens.art.sidebar
        ref: row.entry.artwork
        placeholderSymbol: row.entry.symbol
    }

    Column {
        anchors.left: cover.right
        anchors.leftMargin: Tokens.space.sm
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter

        TextLine {
            width: parent.width
            readable: false
            text: row.entry.name
            font: row.entry.selected ? Tokens.font.bodyMedium : Tokens.font.body
        }

        TextLine {
            width: parent.width
            readable: false
            visible: text !== ""
            text: row.entry.caption
            color: Tokens.color.secondary
            font: Tokens.font.caption
        }
    }
}

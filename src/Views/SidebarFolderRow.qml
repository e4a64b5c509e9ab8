// One folder of the sidebar: opens by its chevron, and selects all that is in it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SelectableRow {
    id: row

    signal toggled

    readonly property int indent: row.entry.depth * Tokens.size.depthIndent

    objectName: "folderRow"

    IconButton {
        id: chevron

        objectName: "folderChevron"
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md + row.indent
        anchors.verticalCenter: parent.verticalCenter
        width: Tokens.space.lg + Tokens.space.xxs
        height: width
        z: 1
        focusPolicy: Qt.NoFocus
        enabled: row.entry.expandable
        symbol: chevron.mirrored ? "chevron.left" : "chevron.right"
        symbolSize: Tokens.size.chevron
        label: row.entry.expandLabel
        hint: "" // the row has one
        rotation: row.entry.expanded ? (chevron.mirrored ? -90 : 90) : 0
        onClicked: row.toggled()

        Behavior on rotation {
            NumberAnimation {
                duration: Tokens.motion.chevron
            }
        }
    }

    Symbol {
        id: folder

        anchors.left: chevron.right
        anchors.leftMargin: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        name: "folder"
        size: Tokens.size.folderSymbol
    }

    TextLine {
        anchors.left: parent.left
        anchors.leftMargin: 2 * Tokens.space.xxl + row.indent
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        text: row.entry.name
        font: row.entry.selected ? Tokens.font.bodyMedium : Tokens.font.body
    }
}

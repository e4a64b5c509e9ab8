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
        x: Tokens.space.md + row.indent
        anchors.verticalCenter: parent.verticalCenter
        width: Tokens.space.lg + Tokens.space.xxs
        height: width
        z: 1
        focusPolicy: Qt.NoFocus
        enabled: row.entry.expandable
        symbol: "chevron.right"
        symbolSize: Tokens.size.chevron
        label: row.entry.expandLabel
        hint: "" // the row has one
        rotation: row.entry.expanded ? 90 : 0
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
        x: 2 * Tokens.space.xxl + row.indent
        width: row.width - x - Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        text: row.entry.name
        font: row.entry.selected ? Tokens.font.bodyMedium : Tokens.font.body
    }
}

// One track: what it is, what is known of its file, and how it stands.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property TrackRowEntry entry
    required property TrackColumns columns
    readonly property int inset: 2 * Tokens.space.md

    signal reviewed
    signal retried
    signal menuRequested
    signal hovered(bool on)

    objectName: "trackRow"
    Accessible.role: Accessible.Row
    Accessible.name: row.entry.title
    Accessible.description: row.entry.details
    Accessible.focusable: true
    Accessible.focused: row.entry.current

    component Cell: TextLine {
        height: row.height
        color: Tokens.color.secondary
        font: Tokens.font.callout
        visible: width > 0
        Accessible.role: Accessible.Cell
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: row.inset - Tokens.space.sm
        anchors.rightMargin: row.inset - Tokens.space.sm
        radius: Tokens.radius.chip
        color: row.entry.underReview ? Tokens.color.selection : Tokens.color.hover
        visible: row.entry.underReview || hover.hovered

        HoverHandler {
            id: hover

            parent: row
            onHoveredChanged: row.hovered(hover.hovered)
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: row.inset - Tokens.space.sm
        anchors.rightMargin: row.inset - Tokens.space.sm
        radius: Tokens.radius.chip
        visible: row.entry.current
        color: Qt.alpha(Tokens.color.accent, 0)
        border.width: Tokens.size.focusRing
        border.color: Tokens.color.accent
    }

    ArtworkView {
        anchors.left: parent.left
        anchors.leftMargin: row.inset
        anchors.verticalCenter: parent.verticalCenter
        size: Tokens.art.row
        ref: row.entry.artwork
        placeholderSymbol: "music.note"
    }

    Cell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.titleX
        width: row.columns.titleWidth
        text: row.entry.title
        color: Tokens.color.primary
        font: Tokens.font.body
    }

    Cell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.artistX
        width: row.columns.artistWidth
        text: row.entry.artist
    }

    Cell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.albumX
        width: row.columns.albumWidth
        text: row.entry.album
    }

    Cell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.timeX
        width: row.columns.timeWidth
        horizontalAlignment: Text.AlignRight
        text: row.entry.time
    }

    Cell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.qualityX
        width: row.columns.qualityWidth
        font: Tokens.font.caption
        text: row.entry.quality
    }

    SourceBadge {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.sourceX
        anchors.verticalCenter: parent.verticalCenter
        width: row.columns.sourceWidth
        visible: width > 0 && label !== ""
        label: row.entry.sourceLabel
        symbol: row.entry.sourceSymbol
        brand: row.entry.sourceColor
    }

    TrackStatusCell {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.statusX
        width: row.columns.statusWidth
        height: row.height
        entry: row.entry
        onReviewed: row.reviewed()
        onRetried: row.retried()
    }

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: row.inset + row.columns.titleX
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: row.inset
        height: Tokens.hairline(Screen.devicePixelRatio)
        visible: !row.entry.last
        color: Tokens.color.divider
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: row.menuRequested()
    }
}

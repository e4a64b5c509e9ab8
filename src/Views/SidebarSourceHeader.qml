// The head of one source's playlists: its mark, its name and how many there are in all.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: header

    required property SidebarEntry entry

    SourceLogo {
        id: logo

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        symbol: header.entry.symbol
        label: header.entry.name
        brand: header.entry.sourceColor
    }

    TextLine {
        anchors.left: logo.right
        anchors.leftMargin: Tokens.space.sm
        anchors.right: count.left
        anchors.verticalCenter: parent.verticalCenter
        text: header.entry.name
        color: Tokens.color.secondary
        font: Tokens.font.calloutSemibold
        Accessible.role: Accessible.Heading
    }

    TextLine {
        id: count

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        text: header.entry.caption
        color: Tokens.color.secondary
        font: Tokens.font.caption
    }
}

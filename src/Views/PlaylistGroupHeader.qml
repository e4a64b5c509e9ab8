// The card over one playlist's table: what it is, how far it has come, and whether its rows show.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: header

    required property GroupHeaderEntry entry

    signal toggled

    objectName: "groupHeader"
    Accessible.role: Accessible.Grouping
    Accessible.name: header.entry.spoken

    GlassBackground {
        objectName: "groupCard"
        anchors.fill: parent
        anchors.leftMargin: Tokens.space.md
        anchors.rightMargin: Tokens.space.md
        role: GlassBackground.GroupCard

        FocusRing {
            visible: header.entry.current
            controlRadius: parent.radius
            anchors.margins: 0
        }

        ArtworkView {
            id: cover

            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.md
            anchors.verticalCenter: parent.verticalCenter
            size: Tokens.art.header
            cornerRadius: Tokens.radius.control
            ref: header.entry.artwork
            placeholderSymbol: header.entry.placeholderSymbol
        }

        Column {
            anchors.left: cover.right
            anchors.leftMargin: Tokens.space.md
            anchors.right: collapse.left
            anchors.rightMargin: Tokens.space.md
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.space.xs

            Item {
                width: parent.width
                height: name.implicitHeight

                SourceLogo {
                    id: logo

                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: header.entry.sourceSymbol
                    label: header.entry.sourceName
                    brand: header.entry.sourceColor
                }

                TextLine {
                    id: name

                    objectName: "groupName"
                    anchors.left: logo.right
                    anchors.leftMargin: Tokens.space.sm
                    width: Math.min(implicitWidth, parent.width - logo.width - 2 * Tokens.space.sm
                                                   - Tokens.size.badgeSymbol)
                    text: header.entry.name
                    font: Tokens.font.title3
                }

                Symbol {
                    anchors.left: name.right
                    anchors.leftMargin: Tokens.space.sm
                    anchors.verticalCenter: parent.verticalCenter
                    visible: header.entry.badgeSymbol !== ""
                    name: header.entry.badgeSymbol
                    color: Tokens.color.inks[header.entry.badgeInk]
                    size: Tokens.size.badgeSymbol
                }
            }

            TextLine {
                width: parent.width
                maximumLineCount: 2
                wrapMode: Text.Wrap
                text: header.entry.counts
                color: Tokens.color.secondary
                font: Tokens.font.callout
            }

            Item {
                width: parent.width
                height: Tokens.size.bar + Tokens.space.xs

                ProgressLine {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    label: header.entry.progressLabel
                    value: header.entry.fraction
                    valueText: header.entry.percentText
                    fill: header.entry.sourceColor
                }
            }
        }

        IconButton {
            id: collapse

            objectName: "collapseButton"
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.md
            anchors.verticalCenter: parent.verticalCenter
            focusPolicy: Qt.NoFocus
            symbol: header.entry.collapseSymbol
            label: header.entry.collapseLabel
            symbolSize: Tokens.size.symbol
            onClicked: header.toggled()
        }
    }
}

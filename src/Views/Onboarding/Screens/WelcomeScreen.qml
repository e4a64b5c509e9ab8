// The first screen of the setup: what the application is for, in three steps.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    topPadding: Tokens.space.xxl

    WelcomeHero {
        anchors.horizontalCenter: parent.horizontalCenter
    }

    Item {
        width: 1
        height: Tokens.space.xl
    }

    Paragraph {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Turn your playlists into a DJ-ready library")
        color: Tokens.color.primary
        font: Tokens.font.title
        Accessible.role: Accessible.Heading
    }

    Item {
        width: 1
        height: Tokens.space.md
    }

    Paragraph {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(Tokens.size.welcomeWidth, parent.width)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("zelk finds and downloads clean audio for the playlists you already love, then drops them straight into your djay library.")
    }

    Item {
        width: 1
        height: Tokens.space.xxl
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Tokens.space.lg

        SymbolLabel {
            anchors.left: parent.left
            symbol: "music.note.list"
            text: qsTr("Connect Apple Music or Spotify")
        }

        SymbolLabel {
            anchors.left: parent.left
            symbol: "arrow.down.circle"
            text: qsTr("zelk downloads matching audio")
        }

        SymbolLabel {
            anchors.left: parent.left
            symbol: "square.stack.3d.up"
            text: qsTr("Auto-imports into your djay library")
        }
    }
}

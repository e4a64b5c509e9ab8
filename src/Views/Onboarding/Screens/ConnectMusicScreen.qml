// The screen of the setup that connects the services with playlists, and chooses whether downloads are verified. The
// connections are made at once.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    required property ConnectMusicLogic logic
    required property SetupChoices choices

    spacing: Tokens.space.md
    Component.onCompleted: screen.logic.begin()

    SetupCard {
        width: parent.width

        ServiceLine {
            objectName: "appleMusicLine"
            title: qsTr("Apple Music")
            subtitle: qsTr("Sign in to read your Apple Music Cloud library and playlists.")
            icon: ServiceIcon {
                assetName: "ServiceAppleMusic"
                size: Tokens.size.serviceIcon
                brandChip: Tokens.color.appleMusic
                fallbackSymbol: "music.note"
                accessibilityName: qsTr("Apple Music")
            }

            AccountControl {
                connection: screen.logic.appleMusic
                service: qsTr("Apple Music")
                brand: Tokens.color.prominentAppleMusic
                brandInk: Tokens.color.onAccent
                onActivated: screen.logic.connectAppleMusic()
            }
        }

        ServiceLine {
            objectName: "localAccessLine"
            divided: true
            title: qsTr("Use the Music app on this Mac")
            subtitle: qsTr("A backup that reads local playlists — no subscription needed. Requires Automation permission.")
            icon: Symbol {
                anchors.centerIn: parent
                name: "desktopcomputer"
                size: Tokens.size.toolMark
            }

            StatusPill {
                objectName: "localAccessEnabled"
                anchors.verticalCenter: parent?.verticalCenter
                visible: screen.logic.localAccess === ConnectMusicLogic.Enabled
                text: qsTr("Enabled")
                symbol: "checkmark.circle.fill"
                ink: Tokens.color.green
            }

            StatusPill {
                objectName: "localAccessDenied"
                anchors.verticalCenter: parent?.verticalCenter
                visible: screen.logic.localAccess === ConnectMusicLogic.Denied
                text: qsTr("Denied")
                symbol: "xmark.circle.fill"
                ink: Tokens.color.red
            }

            PushButton {
                objectName: "localAccessAllow"
                anchors.verticalCenter: parent?.verticalCenter
                visible: screen.logic.localAccess === ConnectMusicLogic.AllowAccess
                text: qsTr("Allow Access")
                onClicked: screen.logic.allowAccess()
            }

            PushButton {
                objectName: "localAccessSettings"
                anchors.verticalCenter: parent?.verticalCenter
                visible: screen.logic.offersSettings
                small: true
                text: qsTr("Open Settings…")
                onClicked: screen.logic.openSettings()
            }
        }
    }

    SetupCard {
        width: parent.width

        ServiceLine {
            objectName: "spotifyLine"
            title: qsTr("Spotify")
            subtitle: screen.logic.spotifySubtitle
            icon: ServiceIcon {
                assetName: "ServiceSpotify"
                size: Tokens.size.serviceIcon
                brandChip: Tokens.color.spotify
                fallbackSymbol: "music.note"
                accessibilityName: qsTr("Spotify")
            }

            AccountControl {
                connection: screen.logic.spotify
                service: qsTr("Spotify")
                brand: Tokens.color.spotify
                brandInk: Tokens.color.onSpotify
                onActivated: screen.logic.connectSpotify()
            }
        }
    }

    SetupCard {
        width: parent.width

        ServiceLine {
            id: matching

            objectName: "matchingLine"
            title: qsTr("MusicBrainz + AcoustID")
            subtitle: qsTr("Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little slower.")
            icon: ServiceIcon {
                assetName: "ServiceAcoustID"
                size: Tokens.size.serviceIcon
                tint: screen.choices.identityEnabled ? Tokens.color.primary : Tokens.color.secondary
                fallbackSymbol: "checkmark.shield"
                accessibilityName: qsTr("MusicBrainz + AcoustID")
            }

            ToggleSwitch {
                objectName: "identityEnabled"
                label: qsTr("Enable MusicBrainz and AcoustID matching")
                on: screen.choices.identityEnabled
                onSwitched: on => screen.choices.identityEnabled = on
            }
        }

        SpringReveal {
            objectName: "identityDetails"
            shown: screen.choices.identityEnabled

            CheckMark {
                objectName: "identityStrict"
                anchors.left: parent?.left
                anchors.leftMargin: matching.textStart
                width: (parent?.width ?? 0) - matching.textStart - Tokens.space.lg
                text: qsTr("Reject a download AcoustID flags as a different recording.")
                font: Tokens.font.caption
                on: screen.choices.identityStrict
                onSwitched: on => screen.choices.identityStrict = on
            }

            Item {
                width: 1
                height: Tokens.space.sm
            }

            SecretField {
                objectName: "acoustidKey"
                anchors.left: parent?.left
                anchors.leftMargin: matching.textStart
                width: (parent?.width ?? 0) - matching.textStart - Tokens.space.lg
                placeholderText: qsTr("AcoustID API key (optional)")
                text: screen.choices.acoustidKey
                onTextChanged: screen.choices.acoustidKey = text
            }

            Item {
                width: 1
                height: Tokens.space.lg
            }
        }
    }
}

// Where playlists are read from: each source with how it stands, and a way to connect and to disconnect it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property AccountsLogic logic

    component Account: AccountRow {
        id: account

        required property AccountLogic logic

        title: account.logic.name
        face: account.logic.face
        live: account.logic.canAct
        onActivated: account.logic.act()
        lead: SourceLogo {
            readable: false
            symbol: account.logic.logo
            label: account.logic.name
            brand: account.logic.accent
        }
    }

    objectName: "accountsSettings"

    FormSection {
        width: parent.width
        title: page.logic.appleMusic.name
        footer: qsTr("Cloud sign-in uses your Apple Music subscription (preferred). "
                     + "The Music app on this Mac is a free local backup that needs Automation permission.")

        Account {
            objectName: "appleMusicAccount"
            logic: page.logic.appleMusic
        }

        FormBlock {
            visible: page.logic.appleMusic.failure !== ""
            divided: false

            FailureNote {
                objectName: "appleMusicFailure"
                width: parent.width
                text: page.logic.appleMusic.failure
            }
        }

        AccountRow {
            objectName: "localLibrary"
            title: qsTr("Music app on this Mac")
            caption: qsTr("Local backup")
            face: page.logic.local
            onActivated: page.logic.actOnLocal()
            lead: Symbol {
                name: "desktopcomputer"
                size: Tokens.size.logo
            }
        }
    }

    FormSection {
        width: parent.width
        title: page.logic.spotify.name
        footer: qsTr("Authorize zelk in your browser to read your Spotify playlists.")

        Account {
            objectName: "spotifyAccount"
            logic: page.logic.spotify
        }

        FormBlock {
            visible: page.logic.spotify.failure !== ""
            divided: false

            FailureNote {
                objectName: "spotifyFailure"
                width: parent.width
                text: page.logic.spotify.failure
            }
        }
    }
}

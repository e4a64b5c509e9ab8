// The settings of the application itself: its look, its updates, the way back into the setup, and what it is.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property GeneralLogic logic

    FormSection {
        width: parent.width
        title: qsTr("Appearance")

        FormRow {
            title: qsTr("Theme")
            readable: false

            PopUpButton {
                objectName: "theme"
                label: qsTr("Theme")
                choices: page.logic.themes
                current: page.logic.theme
                onPicked: index => page.logic.theme = index
            }
        }

        SwitchRow {
            switchName: "reduceGlassEffects"
            title: qsTr("Reduce glass effects")
            on: page.logic.reduceGlassEffects
            onSwitched: on => page.logic.reduceGlassEffects = on
        }
    }

    FormSection {
        width: parent.width
        title: qsTr("Updates")

        SwitchRow {
            switchName: "automaticallyChecks"
            title: qsTr("Check for updates automatically")
            on: page.logic.automaticallyChecks
            onSwitched: on => page.logic.automaticallyChecks = on
        }

        FormBlock {
            PushButton {
                objectName: "checkForUpdates"
                anchors.left: parent?.left
                text: qsTr("Check for Updates…")
                onClicked: page.logic.checkForUpdates()
            }
        }
    }

    FormSection {
        width: parent.width
        title: qsTr("Setup")

        FormBlock {
            PushButton {
                objectName: "reRunSetup"
                anchors.left: parent?.left
                text: qsTr("Re-run Setup Wizard…")
                onClicked: page.logic.reRunSetup()
            }

            Paragraph {
                width: parent.width
                text: qsTr("Reconnect accounts and reconfigure sources, quality, and output.")
                font: Tokens.font.caption
            }
        }
    }

    FormSection {
        width: parent.width
        title: qsTr("About")
        footer: qsTr("Apple Music and Spotify are trademarks of their respective owners.")

        ValueRow {
            objectName: "version"
            title: qsTr("Version")
            value: page.logic.currentVersion
        }

        ValueRow {
            objectName: "cliVersion"
            visible: page.logic.cliVersion !== ""
            title: qsTr("CLI version")
            value: page.logic.cliVersion
        }
    }
}

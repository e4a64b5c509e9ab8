// The settings of how good a file must be, and of how sure a match must be.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property QualityLogic logic

    FormSection {
        width: parent.width
        visible: page.logic.hasConfig
        title: qsTr("Quality")
        footer: page.logic.summary

        FormRow {
            title: qsTr("Minimum quality floor")
            readable: false

            PopUpButton {
                objectName: "floor"
                label: qsTr("Minimum quality floor")
                choices: page.logic.floors
                current: page.logic.floor
                onPicked: index => page.logic.floor = index
            }
        }

        SwitchRow {
            switchName: "losslessOnly"
            title: qsTr("Lossless only")
            on: page.logic.losslessOnly
            onSwitched: on => page.logic.losslessOnly = on
        }

        SwitchRow {
            switchName: "bestQuality"
            title: qsTr("Prefer best available quality")
            on: page.logic.bestQuality
            onSwitched: on => page.logic.bestQuality = on
        }

        SwitchRow {
            switchName: "upgradeEnabled"
            title: qsTr("Upgrade existing files when better found")
            on: page.logic.upgradeEnabled
            onSwitched: on => page.logic.upgradeEnabled = on
        }
    }

    FormSection {
        width: parent.width
        visible: page.logic.hasConfig
        title: qsTr("Matching")
        footer: qsTr("Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little slower.")

        SwitchRow {
            switchName: "verifies"
            title: qsTr("Verify matches with MusicBrainz + AcoustID")
            on: page.logic.verifies
            onSwitched: on => page.logic.verifies = on
        }

        SwitchRow {
            switchName: "strict"
            visible: page.logic.verifies
            title: qsTr("Strict — reject mismatched recordings")
            on: page.logic.strict
            onSwitched: on => page.logic.strict = on
        }

        FormBlock {
            visible: page.logic.verifies
            padding: Tokens.space.md

            SecretField {
                objectName: "acoustidKey"
                width: parent.width
                placeholderText: qsTr("AcoustID API key")
                onAccepted: page.logic.storeAcoustID(text)
            }
        }
    }
}

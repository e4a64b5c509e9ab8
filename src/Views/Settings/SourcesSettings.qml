// The settings of where audio is looked for: which sources, in what order, and how.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property SourcesLogic logic

    Component.onCompleted: page.logic.fill()

    FormSection {
        width: parent.width
        title: qsTr("Download Sources")
        footer: qsTr("Enable the services zelk searches for audio, and drag to set priority — higher is tried first.")

        ReorderList {
            id: sources

            objectName: "sources"
            width: parent.width
            height: Math.max(Tokens.size.sourceList, implicitHeight)
            label: qsTr("Download Sources")
            model: page.logic.order
            onMoved: (from, to) => page.logic.move(from, to)
            delegate: SourceOrderRow {
                list: sources
                onSwitched: on => page.logic.setEnabled(index, on)
            }
        }
    }

    FormSection {
        width: parent.width
        title: qsTr("SoundCloud")
        footer: qsTr("Optional — unlocks higher-quality (256 kbps) SoundCloud streams. Stored securely in your Keychain.")

        FormBlock {
            padding: Tokens.space.md

            SecretField {
                objectName: "soundcloudToken"
                width: parent.width
                placeholderText: qsTr("SoundCloud OAuth token")
                onAccepted: page.logic.storeSoundcloud(text)
            }
        }
    }

    FormSection {
        width: parent.width
        visible: page.logic.hasConfig
        title: qsTr("Advanced")
        footer: qsTr("Search and download tuning. The defaults suit most libraries.")

        Repeater {
            model: page.logic.runSettings.length

            FormRow {
                id: setting

                required property int index
                readonly property var face: page.logic.runSettings[index] // a RunSettingFace

                title: setting.face.text
                readable: false

                Stepper {
                    objectName: "runSetting" + setting.index
                    label: setting.face.text
                    current: setting.face.value
                    minimum: setting.face.minimum
                    maximum: setting.face.maximum
                    step: setting.face.step
                    onPicked: number => page.logic.setRunSetting(setting.index, number)
                }
            }
        }
    }
}

// The settings of the command-line tool: how it stands, and what can be done about it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property CLIToolLogic logic

    Component.onCompleted: page.logic.detect()

    FormSection {
        width: parent.width
        title: qsTr("Status")
        footer: page.logic.lastError

        ValueRow {
            objectName: "cliState"
            title: qsTr("State")
            value: page.logic.stateText
        }

        ValueRow {
            objectName: "cliToolVersion"
            visible: page.logic.version !== ""
            title: qsTr("Version")
            value: page.logic.version
        }

        FormBlock {
            Row {
                anchors.left: parent?.left
                spacing: Tokens.space.sm

                PushButton {
                    objectName: "cliInstall"
                    enabled: !page.logic.busy
                    text: page.logic.installed ? qsTr("Reinstall") : qsTr("Install")
                    onClicked: page.logic.install()
                }

                PushButton {
                    objectName: "cliUninstall"
                    enabled: !page.logic.busy && page.logic.installed
                    text: qsTr("Uninstall")
                    ink: Tokens.color.red
                    onClicked: page.logic.uninstall()
                }

                PushButton {
                    objectName: "cliRepair"
                    enabled: !page.logic.busy
                    text: qsTr("Repair")
                    onClicked: page.logic.install()
                }
            }
        }

        footnotes: CodeNote {
            objectName: "cliNote"
            width: parent.width
            visible: page.logic.lastError === ""
            before: qsTr("Installs a ")
            code: "zelk"
            after: qsTr(" symlink that tracks app updates automatically.")
        }
    }
}

// The settings of where the files go.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property OutputLogic logic

    onVisibleChanged: {
        if (page.visible)
            page.logic.look();
    }
    Component.onCompleted: page.logic.look()

    FormSection {
        width: parent.width
        title: qsTr("Download Folder")

        FormBlock {
            FolderLine {
                objectName: "outputDir"
                width: parent.width
                path: page.logic.outputDir
                placeholder: qsTr("Not set")
                onChoosing: page.logic.chooseFolder()
            }
        }

        footnotes: StatusPill {
            objectName: "writable"
            anchors.left: parent?.left
            visible: page.logic.outputDir !== ""
            text: page.logic.writable ? qsTr("Folder is writable.") : qsTr("Folder is not writable.")
            symbol: page.logic.writable ? "checkmark.circle" : "exclamationmark.triangle"
            ink: page.logic.writable ? Tokens.color.secondary : Tokens.color.orange
        }
    }
}

// What this application is: its name, its version, its licence and where to read more.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

DialogWindow {
    id: dialog

    required property AboutLogic logic

    objectName: "aboutDialog"
    title: qsTr("About zelk")
    symbol: "music.note"
    heading: qsTr("zelk")
    text: qsTr("Turns playlists into a DJ-ready local music library.")
    primaryText: qsTr("Close")
    tertiaryText: qsTr("Visit Website")
    onAccepted: dialog.logic.closed()
    onDeclined: dialog.logic.websiteRequested()
    onDismissed: dialog.logic.closed()

    Column {
        x: Tokens.size.dialogSymbol + Tokens.space.lg
        width: parent.width - x
        spacing: Tokens.space.xs

        TextLine {
            objectName: "aboutVersion"
            text: dialog.logic.version
            font: Tokens.font.callout
        }

        TextLine {
            objectName: "aboutLicence"
            text: qsTr("Free software under the MIT License")
            color: Tokens.color.secondary
            font: Tokens.font.callout
        }
    }
}

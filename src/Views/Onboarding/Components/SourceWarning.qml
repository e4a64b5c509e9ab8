// Asks whether to end the setup although there would be nothing to sync. Closed without an answer, it leaves everything
// as it is.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

DialogWindow {
    id: warning

    required property SetupLogic logic

    objectName: "sourceWarning"
    modality: Qt.ApplicationModal
    symbol: "exclamationmark.triangle"
    heading: qsTr("Continue without a playlist source?")
    text: qsTr("zelk needs Apple Music or Spotify to find playlists to download. You can connect later in Settings — but there's nothing to sync until you do.")
    primaryText: qsTr("Connect a Source")
    tertiaryText: qsTr("Continue Anyway")
    onAccepted: {
        warning.hide();
        warning.logic.connectASource();
    }
    onDeclined: {
        warning.hide();
        warning.logic.continueAnyway();
    }
    onDismissed: warning.hide()

    Connections {
        function onSourceWarningNeeded() {
            warning.show();
            warning.requestActivate();
        }

        target: warning.logic
    }
}

// What the updater has to say: that it looks, what it found, how far the download is, and how it ended.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

DialogWindow {
    id: dialog

    required property UpdateLogic logic

    objectName: "updateDialog"
    symbol: dialog.logic.symbol
    heading: dialog.logic.heading
    text: dialog.logic.text
    primaryText: dialog.logic.primaryText
    secondaryText: dialog.logic.secondaryText
    tertiaryText: dialog.logic.tertiaryText
    onAccepted: dialog.logic.primary()
    onRefused: dialog.logic.secondary()
    onDeclined: dialog.logic.tertiary()
    onDismissed: dialog.logic.close()

    Connections {
        function onTurned() {
            dialog.takeFocus();
        }

        target: dialog.logic
    }

    Spinner {
        objectName: "updateSpinner"
        visible: dialog.logic.busy
        size: Tokens.size.largeSpinner
        color: Tokens.color.accent
    }

    ProgressLine {
        objectName: "updateProgress"
        width: parent.width
        visible: dialog.logic.hasProgress
        label: dialog.logic.heading
        value: dialog.logic.progress
        valueText: dialog.logic.text
        animated: true
    }

    ReleaseNotesView {
        width: parent.width
        visible: dialog.logic.notes !== ""
        text: dialog.logic.notes
    }
}

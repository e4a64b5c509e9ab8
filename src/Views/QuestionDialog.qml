// One question with two answers, in front of everything else.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

DialogWindow {
    id: dialog

    required property QuestionLogic logic

    objectName: "questionDialog"
    modality: Qt.ApplicationModal
    symbol: "lock.shield"
    heading: dialog.logic.title
    text: dialog.logic.text
    primaryText: dialog.logic.yes
    secondaryText: dialog.logic.no
    onAccepted: dialog.logic.accept()
    onRefused: dialog.logic.refuse()
    onDismissed: dialog.logic.dismiss()
}

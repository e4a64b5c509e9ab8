// The decisions on the track under review.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: bar

    required property ReviewLogic logic

    implicitHeight: Tokens.size.toolbar

    Rectangle {
        width: parent.width
        height: Tokens.size.hairline
        color: Tokens.color.divider
    }

    PushButton {
        objectName: "reviewSkip"
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Skip")
        ink: Tokens.color.red
        onClicked: bar.logic.skip()
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm

        PushButton {
            objectName: "reviewUseSelected"
            visible: bar.logic.selectedCandidateId !== ""
            text: qsTr("Use Selected")
            onClicked: bar.logic.useSelected()
        }

        PushButton {
            objectName: "reviewUseURL"
            visible: bar.logic.selectedCandidateId === "" && bar.logic.pastedURL !== ""
            text: qsTr("Use URL")
            onClicked: bar.logic.submitURL()
        }

        PushButton {
            objectName: "reviewAcceptBest"
            enabled: bar.logic.hasCandidates
            text: qsTr("Accept Best")
            stroked: false
            fill: Tokens.color.accentFill
            ink: Tokens.color.onAccent
            onClicked: bar.logic.acceptBest()
        }
    }
}

// The decisions on the track under review.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: bar

    required property ReviewLogic logic

    // Side by side while there is room, else one below the other.
    readonly property bool stacked: skip.implicitWidth + Tokens.space.sm + choices.across
                                    + 2 * Tokens.space.md > bar.width

    implicitHeight: bar.stacked ? skip.height + Tokens.space.sm + choices.height + 2 * Tokens.space.md
                                : Tokens.size.toolbar

    Rectangle {
        width: parent.width
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }

    PushButton {
        id: skip

        objectName: "reviewSkip"
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        y: bar.stacked ? Tokens.space.md : (bar.height - height) / 2
        text: qsTr("Skip")
        ink: Tokens.color.red
        onClicked: bar.logic.skip()
    }

    Flow {
        id: choices

        readonly property real room: useSelected.visible ? useSelected.width + spacing
                                                         : useURL.visible ? useURL.width + spacing : 0
        readonly property real across: choices.room + best.width

        anchors.left: parent.left
        anchors.leftMargin: bar.stacked ? Tokens.space.md : bar.width - width - Tokens.space.md
        y: bar.stacked ? skip.y + skip.height + Tokens.space.sm : (bar.height - height) / 2
        width: Math.min(choices.across, bar.width - 2 * Tokens.space.md)
        spacing: Tokens.space.sm

        PushButton {
            id: useSelected

            objectName: "reviewUseSelected"
            visible: bar.logic.selectedCandidateId !== ""
            text: qsTr("Use Selected")
            onClicked: bar.logic.useSelected()
        }

        PushButton {
            id: useURL

            objectName: "reviewUseURL"
            visible: bar.logic.selectedCandidateId === "" && bar.logic.pastedURL !== ""
            text: qsTr("Use URL")
            onClicked: bar.logic.submitURL()
        }

        PushButton {
            id: best

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

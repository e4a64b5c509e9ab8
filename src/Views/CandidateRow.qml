// One candidate for the track under review; a click anywhere picks it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property var face // a CandidateFace
    required property bool picked

    signal picking

    function press() {
        if (row.enabled)
            row.picking();
    }

    objectName: "candidate"
    implicitHeight: Tokens.size.candidate
    activeFocusOnTab: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: [row.face.title, row.face.confidence, row.face.sourceTag, row.face.delta].filter(part => part !== "")
                                                                                            .join(", ")
    Accessible.checkable: true
    Accessible.checked: row.picked
    Accessible.focusable: true
    Accessible.focused: row.activeFocus
    Accessible.onPressAction: row.press()
    Accessible.onToggleAction: row.press()
    Keys.onSpacePressed: row.press()
    Keys.onReturnPressed: row.press()
    Keys.onEnterPressed: row.press()

    HoverHandler {
        id: hover
    }

    TapHandler {
        id: tap

        onTapped: row.press()
    }

    Rectangle {
        anchors.fill: parent
        radius: Tokens.radius.control
        color: Tokens.color.card
        border.width: Tokens.size.hairline
        border.color: Tokens.color.divider

        Rectangle {
            anchors.fill: parent
            visible: hover.hovered
            radius: parent.radius
            color: tap.pressed ? Tokens.color.pressed : Tokens.color.hover
        }

        Rectangle {
            anchors.fill: parent
            visible: row.picked
            radius: parent.radius
            color: Tokens.color.selection
            border.width: Tokens.size.pickedStroke
            border.color: Tokens.color.accentFill
        }

        FocusRing {
            visible: row.activeFocus
            controlRadius: parent.radius
        }
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: Tokens.space.md
        anchors.rightMargin: Tokens.space.md

        TextLine {
            id: title

            anchors.left: parent.left
            anchors.right: confidence.left
            anchors.rightMargin: Tokens.space.sm
            anchors.bottom: parent.verticalCenter
            anchors.bottomMargin: Tokens.size.hairline
            readable: false
            text: row.face.title
            font: Tokens.font.bodyMedium

            Hint {
                visible: hover.hovered && title.truncated
                text: row.face.title
            }
        }

        TextLine {
            id: confidence

            anchors.right: parent.right
            anchors.verticalCenter: title.verticalCenter
            readable: false
            text: row.face.confidence
            color: Tokens.color.inks[row.face.confidenceInk]
            font: Tokens.font.captionSemibold
        }

        TextLine {
            anchors.left: parent.left
            anchors.right: delta.left
            anchors.rightMargin: Tokens.space.sm
            anchors.top: parent.verticalCenter
            anchors.topMargin: Tokens.size.hairline
            readable: false
            text: row.face.sourceTag
            color: Tokens.color.secondary
            font: Tokens.font.caption
        }

        TextLine {
            id: delta

            anchors.right: parent.right
            anchors.top: parent.verticalCenter
            anchors.topMargin: Tokens.size.hairline
            readable: false
            text: row.face.delta
            color: Tokens.color.inks[row.face.deltaInk]
            font: Tokens.font.caption
        }
    }
}

// The panel in which the user settles the tracks that the engine could not match with confidence.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

Rectangle {
    id: inspector

    required property ReviewLogic logic

    objectName: "reviewInspector"
    color: Tokens.color.sidebar
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Review")

    Shortcut {
        // A filter is emptied first.
        enabled: inspector.logic.presented && !(inspector.Window.activeFocusItem?.takesEscape ?? false)
        sequences: ["Escape"]
        onActivated: inspector.logic.close()
    }

    Shortcut {
        enabled: inspector.logic.presented && inspector.logic.stepperText !== ""
        sequences: ["Ctrl+Alt+["]
        onActivated: inspector.logic.step(-1)
    }

    Shortcut {
        enabled: inspector.logic.presented && inspector.logic.stepperText !== ""
        sequences: ["Ctrl+Alt+]"]
        onActivated: inspector.logic.step(1)
    }

    Item {
        id: head

        width: parent.width
        height: Tokens.size.toolbar

        TextLine {
            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.lg
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Review")
            font: Tokens.font.headline
        }

        IconButton {
            objectName: "closeInspector"
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.md
            anchors.verticalCenter: parent.verticalCenter
            symbol: "xmark"
            label: qsTr("Close")
            onClicked: inspector.logic.close()
        }

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Tokens.hairline(Screen.devicePixelRatio)
            color: Tokens.color.divider
        }
    }

    UnavailableContent {
        anchors.top: head.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !inspector.logic.hasTrack
        compact: true
        symbol: "checkmark.circle"
        title: qsTr("All Caught Up")
        description: qsTr("No matches need review.")
    }

    Flickable {
        id: scroll

        anchors.top: head.bottom
        anchors.bottom: actions.top
        width: parent.width
        visible: inspector.logic.hasTrack
        clip: true
        contentWidth: width
        contentHeight: content.height + 2 * Tokens.space.lg
        boundsBehavior: Flickable.StopAtBounds

        ReviewContent {
            id: content

            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.lg
            y: Tokens.space.lg
            width: parent.width - 2 * Tokens.space.lg
            logic: inspector.logic
            onFocusEntered: area => {
                scroll.contentY = Math.max(Math.min(scroll.contentY, area.y),
                                           area.y + area.height + 2 * Tokens.space.lg - scroll.height);
            }
        }

        T.ScrollBar.vertical: OverlayScrollBar {}
    }

    ReviewActions {
        id: actions

        anchors.bottom: parent.bottom
        width: parent.width
        visible: inspector.logic.hasTrack
        logic: inspector.logic
    }

    Rectangle {
        anchors.left: parent.left
        width: Tokens.hairline(Screen.devicePixelRatio)
        height: parent.height
        color: Tokens.color.divider
    }
}

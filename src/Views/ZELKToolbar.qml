// The toolbar: the tunnel, what waits for review, and the one button that starts or cancels a run.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: toolbar

    required property ZELKCommands commands
    required property VPNLogic vpn
    readonly property CommandsLogic logic: toolbar.commands.logic

    // Short of room, the tunnel and what waits for review say it by their symbols alone.
    readonly property real room: toolbar.width - 2 * Tokens.space.md
    readonly property real wanted: (tunnel.visible ? tunnel.fullWidth + items.spacing : 0)
                                   + (reviewButton.visible ? reviewButton.fullWidth + items.spacing : 0)
                                   + (toolbar.logic.running ? cancelButton.fullWidth : syncButton.fullWidth)
    readonly property bool crowded: toolbar.wanted > toolbar.room

    implicitHeight: Tokens.size.toolbar
    role: GlassBackground.Chrome

    Row {
        id: items

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm

        VPNToolbarControl {
            id: tunnel

            terse: toolbar.crowded
            visible: toolbar.vpn.present
            logic: toolbar.vpn
        }

        PushButton {
            id: reviewButton

            objectName: "toolbarReview"
            terse: toolbar.crowded
            visible: toolbar.logic.canReview
            action: toolbar.commands.review
            stroked: false
            fill: Tokens.color.orangeTint
            ink: Tokens.color.orange
            symbol: "exclamationmark.triangle.fill"
            text: toolbar.logic.reviewText
            hint: qsTr("Review low-confidence matches")
        }

        PushButton {
            id: cancelButton

            objectName: "toolbarCancel"
            visible: toolbar.logic.running
            action: toolbar.commands.cancel
            stroked: false
            fill: Tokens.color.redTint
            ink: Tokens.color.red
            symbol: "stop.fill"
            hint: qsTr("Cancel the running sync (⌘.)")
        }

        PushButton {
            id: syncButton

            // Not bound to the action, which would make it as enabled as the menu's entry is.
            objectName: "toolbarSync"
            visible: !toolbar.logic.running
            enabled: toolbar.logic.hasSelection && toolbar.commands.sync.enabled
            text: toolbar.commands.sync.text
            onClicked: toolbar.commands.sync.trigger(syncButton)
            symbol: "arrow.triangle.2.circlepath"
            hint: qsTr("Sync the selected playlists (⌘R)")
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Tokens.size.hairline
        color: Tokens.color.divider
    }
}

// The toolbar: the tunnel, what waits for review, and the one button that starts or cancels a run.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: toolbar

    required property ZELKCommands commands
    required property VPNLogic vpn
    readonly property CommandsLogic logic: toolbar.commands.logic
    // What is missing for all buttons to show their words: the tunnel's go first, then the review's.
    readonly property real missing: (tunnel.visible ? tunnel.fullWidth + row.spacing : 0)
                                    + (review.visible ? review.fullWidth + row.spacing : 0)
                                    + (cancelButton.visible ? cancelButton.fullWidth : syncButton.fullWidth)
                                    + 2 * Tokens.space.md - toolbar.width

    implicitHeight: Tokens.size.toolbar
    role: GlassBackground.Chrome

    Row {
        id: row

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm

        VPNToolbarControl {
            id: tunnel

            bare: toolbar.missing > 0 && tunnel.text !== ""
            visible: toolbar.vpn.present
            logic: toolbar.vpn
        }

        PushButton {
            id: review

            objectName: "toolbarReview"
            bare: toolbar.missing > (tunnel.visible ? tunnel.bareRoom : 0)
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
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }
}

// What the application may do, each with the answer that the user has given and a way to give the other.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

DialogWindow {
    id: dialog

    required property PermissionsLogic logic

    objectName: "permissionsDialog"
    width: Tokens.size.wideDialogWidth
    symbol: "lock.shield"
    heading: qsTr("Permissions")
    text: qsTr("What zelk may do on your behalf. A change counts from now on.")
    primaryText: qsTr("Done")
    onAccepted: dialog.logic.close()
    onDismissed: dialog.logic.close()
    // The user may have been elsewhere, and have changed something there.
    onActiveChanged: {
        if (dialog.active)
            dialog.logic.refresh();
    }

    Rectangle {
        width: parent.width
        height: rows.height
        radius: Tokens.radius.card
        color: Tokens.color.card
        border.width: Tokens.size.hairline
        border.color: Tokens.color.divider

        Column {
            id: rows

            width: parent.width

            Repeater {
                model: dialog.logic.faces.length

                PermissionRow {
                    required property int index

                    objectName: "permission" + index
                    width: rows.width
                    face: dialog.logic.faces[index]
                    divided: index > 0
                    onActivated: dialog.logic.change(index)
                }
            }
        }
    }
}

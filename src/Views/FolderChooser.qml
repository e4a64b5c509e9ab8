// The desktop's dialog that chooses a folder, or Qt's own where the desktop has none.
pragma ComponentBehavior: Bound

import QtQuick.Dialogs
import zelk

FolderDialog {
    id: dialog

    required property FolderChoice choice

    title: dialog.choice.title
    currentFolder: dialog.choice.start
    onAccepted: dialog.choice.take(dialog.selectedFolder)
    onRejected: dialog.choice.leave()
}

// Asks for a folder, in the desktop's own dialog where there is one. Whatever ends it without one says nothing.
pragma ComponentBehavior: Bound

import QtQuick.Dialogs

FolderDialog {
    id: chooser

    signal chosen(url folder)

    // `folder` is where to begin.
    function ask(folder: url) {
        chooser.currentFolder = folder;
        chooser.open();
    }

    objectName: "folderChooser"
    onAccepted: chooser.chosen(chooser.selectedFolder)
}

// What is new in a version, as text that scrolls when there is much of it.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

Rectangle {
    id: notes

    required property string text

    onTextChanged: flickable.contentY = 0

    implicitHeight: Math.min(Tokens.size.notesMaximum, words.implicitHeight + 2 * Tokens.space.md)
    radius: Tokens.radius.control
    color: Tokens.color.card
    border.width: Tokens.size.hairline
    border.color: Tokens.color.divider

    Flickable {
        id: flickable

        readonly property real furthest: Math.max(0, contentHeight - height)

        function scrollBy(distance: real) {
            flickable.contentY = Math.max(0, Math.min(flickable.furthest, flickable.contentY + distance));
        }

        objectName: "releaseNotes"
        anchors.fill: parent
        anchors.margins: Tokens.size.hairline
        contentHeight: words.implicitHeight + 2 * Tokens.space.md
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: flickable.furthest > 0
        Accessible.role: Accessible.Pane
        Accessible.name: qsTr("Release notes")
        Keys.onUpPressed: flickable.scrollBy(-Tokens.space.xl)
        Keys.onDownPressed: flickable.scrollBy(Tokens.space.xl)
        Keys.onPressed: event => {
            event.accepted = true;
            if (event.key === Qt.Key_PageUp)
                flickable.scrollBy(-flickable.height);
            else if (event.key === Qt.Key_PageDown)
                flickable.scrollBy(flickable.height);
            else if (event.key === Qt.Key_Home)
                flickable.scrollBy(-flickable.contentHeight);
            else if (event.key === Qt.Key_End)
                flickable.scrollBy(flickable.contentHeight);
            else
                event.accepted = false;
        }

        T.ScrollBar.vertical: OverlayScrollBar {}

        Paragraph {
            id: words

            objectName: "releaseNotesText"
            x: Tokens.space.md
            y: Tokens.space.md
            width: flickable.width - 2 * Tokens.space.md
            text: notes.text
            color: Tokens.color.primary
        }
    }

    FocusRing {
        visible: flickable.activeFocus
    }
}

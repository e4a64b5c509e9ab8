// Words in a menu that say something and do nothing.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: note

    required property string text

    implicitWidth: Tokens.size.menuWidth - 2 * Tokens.space.xs
    implicitHeight: Math.max(Tokens.size.menuEntry, words.implicitHeight + 2 * Tokens.space.xs)

    Paragraph {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        width: parent.width - 2 * Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        text: note.text
        font: Tokens.font.callout
    }
}

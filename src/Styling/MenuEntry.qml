// One entry of a menu: its title, and its keys at the right.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.MenuItem {
    id: entry

    // What the keys read as; the action knows them only in portable form.
    property string keys: ""

    implicitWidth: Tokens.size.menuWidth - 2 * Tokens.space.xs
    implicitHeight: Tokens.size.menuEntry
    leftPadding: Tokens.space.md
    rightPadding: Tokens.space.md
    font: Tokens.font.body
    Accessible.name: entry.text
    Accessible.onPressAction: {
        if (!entry.enabled)
            return;
        if (entry.action)
            entry.action.trigger(entry);
        else
            entry.triggered();
    }

    contentItem: Item {
        opacity: entry.enabled ? 1 : Tokens.size.disabledOpacity

        TextLine {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            readable: false
            text: entry.text
            font: entry.font
        }

        TextLine {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            readable: false
            text: entry.keys
            color: Tokens.color.secondary
        }
    }

    background: Rectangle {
        radius: Tokens.radius.chip
        color: entry.highlighted && entry.enabled ? Tokens.color.selection : Qt.alpha(Tokens.color.selection, 0)
    }
}

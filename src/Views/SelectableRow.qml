// The face that rows of the sidebar share: hover, selection, the keyboard's ring and the click.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    required property SidebarEntry entry

    signal pressed(int modifiers)
    signal hovered(bool on)

    function press(modifiers: int) {
        if (row.enabled)
            row.pressed(modifiers);
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: row.entry.spoken
    Accessible.description: row.entry.hint
    Accessible.selectable: true
    Accessible.selected: row.entry.selected
    Accessible.focusable: true
    Accessible.onPressAction: row.press(Qt.NoModifier)
    Accessible.onToggleAction: row.press(Qt.ControlModifier)

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: Tokens.space.sm
        anchors.rightMargin: Tokens.space.sm
        radius: Tokens.radius.chip
        visible: row.entry.selected || row.entry.current || area.containsMouse
        color: row.entry.selected ? Tokens.color.selection : area.containsMouse ? Tokens.color.hover
                                                                               : Qt.alpha(Tokens.color.hover, 0)
        border.width: row.entry.current ? Tokens.size.focusRing : 0
        border.color: Tokens.color.accent
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: false
        onClicked: mouse => row.pressed(mouse.modifiers)
        onContainsMouseChanged: row.hovered(area.containsMouse)
    }
}

// A row of a list that is put into another order; the handle before its words says so.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

FocusScope {
    id: row

    required property int index
    required property ReorderList list
    // What a screen reader calls it.
    required property string label
    default property alias content: body.data
    // How far it has been dragged.
    property real offset: 0
    // None any more while they all go.
    readonly property int dragged: row.list?.dragged ?? -1
    readonly property bool lifted: row.dragged === row.index
    // Where its words begin, which the line above it keeps to.
    property real textInset: 0

    width: parent?.width ?? 0
    implicitHeight: Math.max(Tokens.size.formRowOfTwoLines, body.childrenRect.height)
    z: row.lifted ? 1 : 0
    Accessible.role: Accessible.ListItem
    Accessible.name: row.label
    Accessible.focusable: true
    Accessible.focused: grip.activeFocus
    Accessible.onIncreaseAction: row.list.step(row.index, -1)
    Accessible.onDecreaseAction: row.list.step(row.index, 1)
    Keys.onPressed: event => {
        event.accepted = event.modifiers & Qt.AltModifier && (event.key === Qt.Key_Up || event.key === Qt.Key_Down);
        if (event.accepted)
            row.list.step(row.index, event.key === Qt.Key_Up ? -1 : 1);
    }

    transform: Translate {
        y: row.lifted ? row.offset : row.list?.shiftOf(row.index) ?? 0

        Behavior on y {
            enabled: row.dragged >= 0 && !row.lifted

            NumberAnimation {
                duration: Tokens.motion.toggle
                easing.type: Easing.OutCubic
            }
        }
    }

    MouseArea {
        id: area

        property real start: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        cursorShape: row.lifted ? Qt.ClosedHandCursor : Qt.ArrowCursor
        onPressed: mouse => {
            area.start = area.mapToItem(row.list, 0, mouse.y).y;
            row.offset = 0;
        }
        onPositionChanged: mouse => {
            if (!area.pressed)
                return;
            row.offset = area.mapToItem(row.list, 0, mouse.y).y - area.start;
            if (row.lifted || Math.abs(row.offset) >= area.drag.threshold)
                row.list.follow(row.index, row.y + row.offset + (row.offset > 0 ? row.height : 0), row.height);
        }
        onReleased: {
            if (row.lifted)
                row.list.drop();
        }
        onCanceled: row.list.letGo()
    }

    Rectangle {
        anchors.fill: parent
        visible: row.lifted
        color: Tokens.color.card
        radius: Tokens.radius.control
        border.width: Tokens.size.hairline
        border.color: Tokens.color.divider
    }

    Rectangle {
        anchors.left: body.left
        anchors.leftMargin: row.textInset
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: row.y > 0 && !row.lifted
        color: Tokens.color.divider
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: Tokens.space.xxs
        visible: area.containsMouse && row.dragged < 0
        radius: Tokens.radius.control
        color: Tokens.color.hover
    }

    Item {
        id: grip

        anchors.left: parent.left
        width: Tokens.space.md + Tokens.size.symbol
        height: parent.height
        focus: true
        activeFocusOnTab: true

        Symbol {
            objectName: "grip"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            name: "line.3.horizontal"
            color: Tokens.color.tertiary
        }
    }

    Item {
        id: body

        anchors.left: grip.right
        anchors.leftMargin: Tokens.space.lg
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        height: parent.height
    }

    FocusRing {
        anchors.fill: parent
        anchors.margins: Tokens.size.focusRing
        visible: grip.activeFocus
        controlRadius: Tokens.radius.chip
    }
}

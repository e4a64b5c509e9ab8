// A list whose rows are put into another order: dragged, or moved by Alt with the arrow keys. It asks for the move; the
// rows come to their new places when the model has moved them.
pragma ComponentBehavior: Bound

import QtQuick

Item {
    id: list

    required property string label
    property alias model: rows.model
    // Of ReorderRow.
    property alias delegate: rows.delegate
    // The row in the hand, and where it would stand; -1 for none.
    property int dragged: -1
    property int target: -1
    property real draggedHeight: 0

    // `to` is the place that the row has afterwards. A row that was dragged to its own place asks too.
    signal moved(int from, int to)

    // The row at `index`, `height` high, has been dragged to where the edge that goes before is at `edge`.
    function follow(index: int, edge: real, height: real) {
        let before = 0;
        for (let i = 0; i < rows.count; ++i) {
            const other = rows.itemAt(i);
            if (i !== index && other.y + other.height / 2 < edge)
                ++before;
        }
        list.draggedHeight = height;
        list.target = before;
        list.dragged = index;
    }

    function drop() {
        const from = list.dragged;
        const to = list.target;
        list.letGo();
        list.moved(from, to);
    }

    function letGo() {
        list.dragged = -1;
        list.target = -1;
    }

    // Rows between the old and the new place of the dragged one make room for it.
    function shiftOf(index: int): real {
        if (list.dragged < 0)
            return 0;
        if (index > list.dragged && index <= list.target)
            return -list.draggedHeight;
        return index < list.dragged && index >= list.target ? list.draggedHeight : 0;
    }

    function step(index: int, by: int) {
        const to = index + by;
        if (list.dragged < 0 && to >= 0 && to < rows.count)
            list.moved(index, to);
    }

    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.List
    Accessible.name: list.label

    Column {
        id: column

        width: parent.width

        Repeater {
            id: rows
        }
    }
}

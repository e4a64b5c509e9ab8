// A scrolling list of known heights with the keyboard's way through it; what a key means is for its user to say.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

Flickable {
    id: list

    required property MeasuredListModel model
    property alias delegates: column.delegates
    property alias currentIndex: column.currentIndex
    property int topInset: 0
    property int bottomInset: 0
    // The rows' notes stand beside the list, where they cover none of its rows, and not under their row.
    property bool hintsBeside: false
    // Where somebody who types means to go: from (text) to an index, -1 for nowhere.
    property var find: null

    signal moved(int index, int modifiers)
    signal activated(int index)
    signal toggled(int index)
    signal opened(int index, int modifiers)
    signal closed(int index, int modifiers)
    signal menuRequested(int index)

    function reveal(index: int) {
        if (index < 0)
            return;
        const top = list.topInset + list.model.yOf(index);
        const bottom = top + list.model.heightOf(index);
        if (top - list.topInset < list.contentY)
            list.contentY = Math.max(0, top - list.topInset);
        else if (bottom + list.bottomInset > list.contentY + list.height)
            list.contentY = bottom + list.bottomInset - list.height;
    }

    function step(steps: int, modifiers: int) {
        list.moveTo(column.neighbour(list.currentIndex, steps), modifiers);
    }

    function moveTo(target: int, modifiers: int) {
        list.currentIndex = target;
        list.reveal(target);
        list.moved(target, modifiers);
    }

    // The pointer brings the keyboard along, but not its ring.
    function take(index: int) {
        column.byKeyboard = false;
        list.currentIndex = index;
        list.forceActiveFocus(Qt.MouseFocusReason);
    }

    function findTyped(event: var): bool {
        if (list.find === null || event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return false;
        const found = list.find(event.text);
        if (found >= 0)
            list.moveTo(found, Qt.NoModifier);
        return found >= 0;
    }

    // The note of the row under the pointer; an empty text takes it away.
    function showHint(row: Item, text: string) {
        if (text !== "") {
            hint.parent = row;
            hint.text = text;
            hint.open();
        } else if (hint.parent === row) {
            hint.close();
        }
    }

    // Elements that a page of the view holds, by the height of the one the keyboard stands on.
    function page(): int {
        return Math.max(1, Math.floor(list.height / list.model.heightOf(Math.max(0, list.currentIndex))) - 1);
    }

    contentWidth: list.width
    contentHeight: list.topInset + column.implicitHeight + list.bottomInset
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    clip: true
    activeFocusOnTab: true
    Accessible.role: Accessible.List
    onActiveFocusChanged: {
        if (list.activeFocus && list.currentIndex < 0 && list.model.contentHeight > 0)
            list.currentIndex = column.neighbour(-1, 1);
    }
    onContentHeightChanged: list.returnToBounds()

    Keys.onPressed: event => {
        if (list.model.contentHeight <= 0)
            return;
        event.accepted = true;
        if (![Qt.Key_Control, Qt.Key_Shift, Qt.Key_Alt, Qt.Key_Meta].includes(event.key))
            column.byKeyboard = true;
        switch (event.key) {
        case Qt.Key_Up:
            return list.step(-1, event.modifiers);
        case Qt.Key_Down:
            return list.step(1, event.modifiers);
        case Qt.Key_PageUp:
            return list.step(-list.page(), event.modifiers);
        case Qt.Key_PageDown:
            return list.step(list.page(), event.modifiers);
        case Qt.Key_Home:
            return list.step(-column.count, event.modifiers);
        case Qt.Key_End:
            return list.step(column.count, event.modifiers);
        case Qt.Key_Left:
        case Qt.Key_Right:
            // A tree grows the way that the layout runs.
            if ((event.key === Qt.Key_Right) === list.LayoutMirroring.enabled)
                return list.closed(list.currentIndex, event.modifiers);
            return list.opened(list.currentIndex, event.modifiers);
        case Qt.Key_Return:
        case Qt.Key_Enter:
            return list.activated(list.currentIndex);
        case Qt.Key_Space:
            if (event.modifiers & Qt.ControlModifier)
                return list.toggled(list.currentIndex);
            if (!list.findTyped(event))
                list.activated(list.currentIndex);
            return;
        case Qt.Key_Menu:
            return list.menuRequested(list.currentIndex);
        case Qt.Key_F10:
            if (event.modifiers & Qt.ShiftModifier)
                return list.menuRequested(list.currentIndex);
        }
        event.accepted = list.findTyped(event);
    }

    T.ScrollBar.vertical: OverlayScrollBar {
        objectName: "scrollBar"
    }

    ListWindow {
        id: column

        property bool byKeyboard: true

        y: list.topInset
        width: list.contentWidth
        height: implicitHeight
        model: list.model
        viewTop: list.contentY - list.topInset
        viewHeight: list.height
        textScale: Tokens.textScale
        currentShown: list.activeFocus && column.byKeyboard
        onContentShifted: delta => list.contentY = Math.max(0, list.contentY + delta)
    }

    Hint {
        id: hint

        readonly property Item row: hint.parent as Item

        objectName: "rowHint"
        x: !hint.row ? 0
         : !list.hintsBeside ? Math.round((hint.row.width - hint.implicitWidth) / 2)
         : list.LayoutMirroring.enabled ? -hint.implicitWidth - Tokens.space.xs : hint.row.width + Tokens.space.xs
        y: !hint.row ? 0
         : list.hintsBeside ? Math.round((hint.row.height - hint.implicitHeight) / 2) : hint.row.height + Tokens.space.xs
    }

    FocusWatch {
        item: list
        onCame: byKeyboard => column.byKeyboard = byKeyboard
    }

    TapHandler {
        id: tap

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressedChanged: {
            if (!tap.pressed)
                return;
            const under = list.model.indexAt(tap.point.position.y - list.topInset);
            const canTake = under >= 0 && column.neighbour(under - 1, 1) === under;
            list.take(canTake ? under : list.currentIndex);
        }
    }
}

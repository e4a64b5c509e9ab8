// The form of one tab: sections under each other, which scroll when they don't all fit.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

Flickable {
    id: page

    default property alias sections: column.data
    readonly property Item focused: page.Window.activeFocusItem
    readonly property real furthest: Math.max(0, page.contentHeight - page.height)

    function scrollTo(place: real) {
        page.contentY = Math.max(0, Math.min(page.furthest, place));
    }

    // Whatever the keyboard comes to is brought into view.
    function reveal(item: Item) {
        for (let above = item; above; above = above.parent) {
            if (above !== column)
                continue;
            const top = item.mapToItem(column, 0, 0).y + column.y;
            if (top - Tokens.space.xl < page.contentY)
                page.scrollTo(top - Tokens.space.xl);
            else if (top + item.height + Tokens.space.xl > page.contentY + page.height)
                page.scrollTo(top + item.height + Tokens.space.xl - page.height);
            return;
        }
    }

    contentWidth: width
    contentHeight: column.y + column.height + Tokens.space.xl
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    clip: true
    onFocusedChanged: {
        if (page.focused)
            page.reveal(page.focused);
    }
    onContentHeightChanged: page.returnToBounds()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
        if (event.accepted)
            page.scrollTo(page.contentY + (event.key === Qt.Key_PageUp ? -page.height : page.height));
    }

    T.ScrollBar.vertical: OverlayScrollBar {}

    Column {
        id: column

        x: Tokens.size.formSide
        y: Tokens.space.lg
        width: page.width - 2 * x
        spacing: Tokens.space.lg
    }
}

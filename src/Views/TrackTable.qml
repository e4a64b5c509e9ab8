// The tables of all playlists as one scrolling column, and the menu of their rows.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

MeasuredList {
    id: table

    required property DetailLogic logic
    required property WindowMemory memory
    // Orders nothing: the rows stand as their playlist has them.
    property string sortColumn: table.memory.sortColumn

    function openMenu(index: int, place: Item) {
        if (table.logic.openMenu(index))
            menu.popup(place);
    }

    // By keyboard there is no pointer to open it at: it opens under its row.
    function openMenuByKey(index: int) {
        if (!table.logic.openMenu(index))
            return;
        table.reveal(index);
        menu.popup(table.contentItem, 2 * Tokens.space.md,
                   table.topInset + table.model.yOf(index) + table.model.heightOf(index));
    }

    objectName: "trackTable"
    model: table.logic.tracks
    bottomInset: Tokens.space.md
    Accessible.name: qsTr("Tracks")
    onSortColumnChanged: table.memory.sortColumn = table.sortColumn
    onActivated: index => table.logic.activate(index)
    onToggled: index => table.logic.activate(index)
    onOpened: index => table.logic.setCollapsed(index, false)
    onClosed: index => table.logic.setCollapsed(index, true)
    onMenuRequested: index => table.openMenuByKey(index)

    delegates: [
        Component {
            PlaylistGroupHeader {
                onToggled: table.logic.activate(entry.index)
            }
        },
        Component {
            TrackColumnHeads {
                columns: grid
            }
        },
        Component {
            TrackRow {
                columns: grid
                onReviewed: table.logic.review(entry.index)
                onRetried: table.logic.retry()
                onMenuRequested: table.openMenu(entry.index, this)
                onHovered: on => table.showHint(this, on ? entry.hint : "")
            }
        }
    ]

    TrackColumns {
        id: grid

        width: table.width
        textScale: Tokens.textScale
        roomy: table.logic.tracks.showsDownloads
        memory: table.memory
    }

    Connections {
        target: table.logic

        function onRevealRequested(index) {
            table.reveal(index);
        }
    }

    MenuPanel {
        id: menu

        // The keyboard comes back to its row, unless something else has taken it.
        onClosed: {
            if (table.Window.activeFocusItem === table.Window.contentItem)
                table.forceActiveFocus(Qt.PopupFocusReason);
        }

        MenuEntry {
            objectName: "menuRetry"
            text: qsTr("Retry")
            onTriggered: table.logic.retry()
        }

        MenuEntry {
            objectName: "menuReview"
            visible: table.logic.menuOffersReview
            enabled: visible // or the keyboard would stop at it
            height: visible ? implicitHeight : 0
            text: qsTr("Review…")
            onTriggered: table.logic.reviewMenuTrack()
        }

        MenuEntry {
            objectName: "menuSkip"
            text: qsTr("Skip")
            onTriggered: table.logic.skipMenuTrack()
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuCopyTitle"
            text: qsTr("Copy Title")
            onTriggered: table.logic.copyMenuTitle()
        }
    }
}

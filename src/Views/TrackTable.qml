// The tables of all playlists as one scrolling column, and the menu of their rows.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

MeasuredList {
    id: table

    required property DetailLogic logic

    function openMenu(index: int, place: Item) {
        if (!table.logic.isRow(index))
            return;
        menu.row = index;
        menu.offersReview = table.logic.needsReview(index);
        menu.popup(place);
    }

    objectName: "trackTable"
    model: table.logic.tracks
    bottomInset: Tokens.space.md
    Accessible.name: qsTr("Tracks")
    onActivated: index => table.logic.activate(index)
    onToggled: index => table.logic.activate(index)
    onOpened: index => table.logic.setCollapsed(index, false)
    onClosed: index => table.logic.setCollapsed(index, true)
    onMenuRequested: index => table.openMenu(index, table)

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
        roomy: table.logic.tracks.showsDownloads
    }

    Connections {
        target: table.logic

        function onRevealRequested(index) {
            table.reveal(index);
        }
    }

    MenuPanel {
        id: menu

        property int row: -1
        property bool offersReview: false

        MenuEntry {
            objectName: "menuRetry"
            text: qsTr("Retry")
            onTriggered: table.logic.retry()
        }

        MenuEntry {
            objectName: "menuReview"
            visible: menu.offersReview
            height: visible ? implicitHeight : 0
            text: qsTr("Review…")
            onTriggered: table.logic.review(menu.row)
        }

        MenuEntry {
            objectName: "menuSkip"
            text: qsTr("Skip")
            onTriggered: table.logic.skip(menu.row)
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuCopyTitle"
            text: qsTr("Copy Title")
            onTriggered: table.logic.copyTitle(menu.row)
        }
    }
}

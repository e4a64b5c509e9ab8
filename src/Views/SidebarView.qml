// The user's playlists as a tree by source, with a filter above.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: sidebar

    required property SidebarLogic logic

    color: Tokens.color.sidebar

    Item {
        id: head

        width: parent.width
        height: Tokens.size.toolbar

        SourceLogo {
            id: mark

            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.lg
            anchors.verticalCenter: parent.verticalCenter
            size: Tokens.art.sidebar
            readable: false
            symbol: "waveform"
            label: ""
            brand: Tokens.color.accentFill
        }

        TextLine {
            anchors.left: mark.right
            anchors.leftMargin: Tokens.space.sm
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("zelk")
            font: Tokens.font.title3
        }
    }

    SearchField {
        id: search

        objectName: "filterField"
        anchors.top: head.bottom
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.sm
        width: parent.width - 2 * Tokens.space.sm
        placeholderText: qsTr("Filter playlists")
        text: sidebar.logic.searchText
        onTextChanged: sidebar.logic.searchText = search.text
        Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)

        Shortcut {
            sequences: ["Ctrl+F"]
            onActivated: {
                search.forceActiveFocus(Qt.ShortcutFocusReason);
                search.selectAll();
            }
        }
    }

    MeasuredList {
        id: list

        objectName: "playlistList"
        anchors.top: search.bottom
        anchors.topMargin: Tokens.space.sm
        anchors.bottom: parent.bottom
        width: parent.width
        bottomInset: Tokens.space.sm
        hintsBeside: true
        visible: sidebar.logic.face === SidebarLogic.List
        Accessible.name: qsTr("Playlists")
        model: sidebar.logic.playlists
        onMoved: (index, modifiers) => sidebar.logic.moved(index, modifiers)
        onToggled: index => sidebar.logic.press(index, Qt.ControlModifier)
        onActivated: index => sidebar.logic.press(index, Qt.NoModifier)
        find: text => sidebar.logic.find(text, list.currentIndex)
        onOpened: (index, modifiers) => {
            const inside = sidebar.logic.enter(index);
            if (inside >= 0)
                list.moveTo(inside, modifiers);
        }
        onClosed: (index, modifiers) => {
            const around = sidebar.logic.leave(index);
            if (around >= 0)
                list.moveTo(around, modifiers);
        }

        Shortcut {
            sequences: ["Ctrl+A"]
            enabled: list.activeFocus
            onActivated: sidebar.logic.selectAll()
        }

        delegates: [
            Component {
                SidebarSourceHeader {}
            },
            Component {
                SidebarFolderRow {
                    onPressed: modifiers => {
                        list.take(entry.index);
                        sidebar.logic.press(entry.index, modifiers);
                    }
                    onToggled: sidebar.logic.toggleExpansion(entry.index)
                    onHovered: on => list.showHint(this, on ? entry.hint : "")
                }
            },
            Component {
                SidebarPlaylistRow {
                    onPressed: modifiers => {
                        list.take(entry.index);
                        sidebar.logic.press(entry.index, modifiers);
                    }
                }
            }
        ]
    }

    UnavailableContent {
        objectName: "sidebarFailed"
        anchors.fill: list
        visible: sidebar.logic.face === SidebarLogic.Failed
        compact: true
        symbol: "exclamationmark.triangle"
        title: qsTr("Couldn't load playlists")
        description: sidebar.logic.failure
        actionText: qsTr("Try Again")
        onActivated: sidebar.logic.refresh()
    }

    UnavailableContent {
        objectName: "sidebarEmpty"
        anchors.fill: list
        visible: sidebar.logic.face === SidebarLogic.Empty
        compact: true
        symbol: "music.note.list"
        title: qsTr("No Playlists Yet")
        description: qsTr("Connect Apple Music or Spotify to see your playlists here.")
        actionText: qsTr("Open Setup")
        onActivated: sidebar.logic.openSetup()
    }

    Column {
        anchors.centerIn: list
        spacing: Tokens.space.sm
        visible: sidebar.logic.face === SidebarLogic.Loading || sidebar.logic.face === SidebarLogic.Waiting

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            size: Tokens.size.largeSpinner
        }

        TextLine {
            visible: sidebar.logic.face === SidebarLogic.Loading
            text: qsTr("Loading playlists…")
            color: Tokens.color.secondary
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: Tokens.hairline(Screen.devicePixelRatio)
        height: parent.height
        color: Tokens.color.divider
    }
}

// The strip under everything that says which files have fallen out of the playlists, and asks what becomes of them.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

GlassBackground {
    id: banner

    required property OrphansLogic logic
    // What it may take of the window; a longer list scrolls.
    property real maximumHeight: Infinity
    readonly property real listRoom: banner.maximumHeight - Tokens.size.strip - Tokens.space.md

    objectName: "orphansBanner"
    implicitHeight: Tokens.size.strip + (banner.logic.expanded ? scroll.height + Tokens.space.md : 0)
    clip: true
    role: GlassBackground.Chrome
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Leftover files")

    Item {
        id: row

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        height: Tokens.size.strip

        Symbol {
            id: symbol

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            name: "trash.slash"
            color: Tokens.color.orange
            size: Tokens.size.bannerSymbol
        }

        TextLine {
            id: message

            objectName: "orphansMessage"
            anchors.left: symbol.right
            anchors.leftMargin: Tokens.space.sm
            anchors.right: buttons.left
            anchors.rightMargin: Tokens.space.lg
            anchors.verticalCenter: parent.verticalCenter
            text: banner.logic.message
            font: Tokens.font.callout
        }

        Row {
            id: buttons

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.space.sm

            PushButton {
                objectName: "orphansToggle"
                stroked: false
                fill: Qt.alpha(Tokens.color.window, 0)
                ink: Tokens.color.accent
                text: banner.logic.expanded ? qsTr("Hide") : qsTr("Show")
                onClicked: banner.logic.toggle()
            }

            PushButton {
                objectName: "orphansKeep"
                text: qsTr("Keep")
                onClicked: banner.logic.keep()
            }

            PushButton {
                objectName: "orphansTrash"
                prominent: true
                fill: Tokens.color.prominentRed
                text: qsTr("Move to Trash")
                onClicked: banner.logic.moveToTrash()
            }
        }
    }

    Flickable {
        id: scroll

        function show(file: Item) {
            scroll.contentY = Math.max(file.y + file.height - scroll.height, Math.min(scroll.contentY, file.y));
        }

        objectName: "orphansList"
        anchors.top: row.bottom
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg + symbol.width + Tokens.space.sm
        anchors.right: row.right
        height: Math.max(Tokens.size.fileRow, Math.min(list.height, banner.listRoom))
        visible: banner.logic.expanded
        clip: true
        contentHeight: list.height
        boundsBehavior: Flickable.StopAtBounds
        onContentHeightChanged: scroll.returnToBounds()

        T.ScrollBar.vertical: OverlayScrollBar {}

        Column {
            id: list

            width: scroll.width

            Repeater {
                model: banner.logic.names

                Item {
                    id: file

                    required property string modelData
                    required property int index

                    objectName: "orphansFile"
                    width: list.width
                    height: Tokens.size.fileRow

                    Symbol {
                        id: sheet

                        anchors.left: parent.left
                        anchors.verticalCenter: parent.verticalCenter
                        name: "doc"
                        size: Tokens.size.smallSymbol
                    }

                    TextLine {
                        id: name

                        anchors.left: sheet.right
                        anchors.leftMargin: Tokens.space.sm
                        anchors.verticalCenter: parent.verticalCenter
                        width: Math.min(implicitWidth, file.width - sheet.width - Tokens.space.sm - reveal.width - Tokens.space.xs)
                        elide: Text.ElideMiddle
                        text: file.modelData
                        font: Tokens.font.caption
                    }

                    IconButton {
                        id: reveal

                        objectName: "orphansReveal"
                        anchors.left: name.right
                        anchors.leftMargin: Tokens.space.xs
                        anchors.verticalCenter: parent.verticalCenter
                        width: Tokens.size.smallButton
                        height: Tokens.size.smallButton
                        symbol: "magnifyingglass"
                        symbolSize: Tokens.size.smallSymbol
                        label: qsTr("Reveal in Finder")
                        Accessible.description: file.modelData
                        onClicked: banner.logic.reveal(file.index)
                        onActiveFocusChanged: {
                            if (reveal.activeFocus)
                                scroll.show(file);
                        }
                    }
                }
            }

            TextLine {
                objectName: "orphansMore"
                width: list.width
                height: Tokens.size.fileRow
                visible: banner.logic.more !== ""
                text: banner.logic.more
                color: Tokens.color.secondary
                font: Tokens.font.caption
            }
        }
    }

    Rectangle {
        width: parent.width
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }
}

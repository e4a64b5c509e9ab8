// The titles over the columns of one table.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: heads

    required property ListEntry entry
    required property TrackColumns columns
    readonly property int inset: 2 * Tokens.space.md

    component Head: TextLine {
        height: heads.height
        color: Tokens.color.secondary
        font: Tokens.font.captionMedium
        visible: width > 0
        Accessible.role: Accessible.ColumnHeader
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.titleX
        width: heads.columns.titleWidth
        text: qsTr("Title")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.artistX
        width: heads.columns.artistWidth
        text: qsTr("Artist")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.albumX
        width: heads.columns.albumWidth
        text: qsTr("Album")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.timeX
        width: heads.columns.timeWidth
        horizontalAlignment: Text.AlignRight
        text: qsTr("Time")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.qualityX
        width: heads.columns.qualityWidth
        text: qsTr("Quality")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.sourceX
        width: heads.columns.sourceWidth
        text: qsTr("Source")
    }

    Head {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset + heads.columns.statusX
        width: heads.columns.statusWidth
        text: qsTr("Status")
    }

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: heads.inset
        anchors.bottom: parent.bottom
        width: heads.width - 2 * heads.inset
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }

    Repeater {
        model: heads.columns.edges.length

        MouseArea {
            id: edge

            required property int index
            readonly property real at: heads.columns.edges[edge.index] ?? -1
            property real from: 0

            function place(mouse: MouseEvent): real {
                const across = edge.mapToItem(heads, mouse.x, mouse.y).x;
                return heads.LayoutMirroring.enabled ? heads.width - across : across;
            }

            objectName: "columnEdge"
            anchors.left: parent?.left
            anchors.leftMargin: heads.inset + edge.at - edge.width / 2
            width: Tokens.space.sm
            height: heads.height
            visible: edge.at >= 0
            hoverEnabled: true
            preventStealing: true
            cursorShape: Qt.SplitHCursor
            onPressed: mouse => {
                edge.from = edge.place(mouse);
                heads.columns.beginDrag();
            }
            onPositionChanged: mouse => {
                if (edge.pressed)
                    heads.columns.drag(edge.index, edge.place(mouse) - edge.from);
            }
            onDoubleClicked: heads.columns.release(edge.index)

            Rectangle {
                anchors.centerIn: parent
                width: Tokens.size.hairline
                height: Tokens.space.lg
                visible: edge.containsMouse || edge.pressed
                color: Tokens.color.divider
            }
        }
    }
}

// The pane beside the sidebar: the engine's failure, the rows of a run or of a preview, or why there are none.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: detail

    required property DetailLogic logic
    required property WindowMemory memory
    // Room that a message over the list takes, so that it covers nothing at rest.
    property int messageRoom: 0

    TrackTable {
        id: table

        anchors.top: parent.top
        anchors.bottom: bar.top
        width: parent.width
        topInset: Tokens.space.md + detail.messageRoom
        visible: detail.logic.face === DetailLogic.Run || detail.logic.face === DetailLogic.Preview
        logic: detail.logic
        memory: detail.memory
    }

    Item {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        height: run.visible ? run.implicitHeight : preview.implicitHeight

        OverallSummaryBar {
            id: run

            anchors.fill: parent
            visible: detail.logic.face === DetailLogic.Run
            logic: detail.logic
        }

        PreviewSummaryBar {
            id: preview

            anchors.fill: parent
            visible: detail.logic.face === DetailLogic.Preview
            logic: detail.logic
        }
    }

    UnavailableContent {
        objectName: "helperUnavailable"
        anchors.fill: parent
        visible: detail.logic.face === DetailLogic.Unavailable
        symbol: "exclamationmark.triangle"
        title: qsTr("Helper Unavailable")
        description: detail.logic.startupError
    }

    UnavailableContent {
        objectName: "selectPlaylist"
        anchors.fill: parent
        visible: detail.logic.face === DetailLogic.Empty
        symbol: "music.note.list"
        title: qsTr("Select a Playlist")
        description: qsTr("Choose a playlist in the sidebar to see its tracks, then press Sync (⌘R) to download.")
    }

    Spinner {
        objectName: "detailSpinner"
        anchors.centerIn: parent
        visible: detail.logic.face === DetailLogic.Waiting
        size: Tokens.size.largeSpinner
    }
}

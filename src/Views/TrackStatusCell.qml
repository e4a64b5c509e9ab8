// How a track stands, and the one thing that can be done about it. All faces exist in every row: rows are used again,
// and making a face anew costs more than keeping it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: cell

    required property TrackRowEntry entry
    readonly property bool failed: cell.entry.face === TrackRowEntry.Failed
    readonly property bool checking: cell.entry.face === TrackRowEntry.Checking

    signal reviewed
    signal retried

    Row {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: cell.failed || cell.entry.face === TrackRowEntry.Pill
        spacing: Tokens.space.sm

        StatusPill {
            id: reason

            anchors.verticalCenter: parent.verticalCenter
            text: cell.entry.statusText
            shortText: cell.failed && reason.text !== ""
                       ? cell.entry.fittingReason(reason.textRoom, Tokens.font.caption) : reason.text
            symbol: cell.entry.statusSymbol
            ink: Tokens.color.inks[cell.entry.statusInk]
            maximumWidth: cell.failed ? cell.width - retry.width - Tokens.space.sm : cell.width
        }

        PushButton {
            id: retry

            objectName: "retryButton"
            visible: cell.failed
            small: true
            focusPolicy: Qt.NoFocus
            text: qsTr("Retry")
            onClicked: cell.retried()
        }
    }

    Row {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: cell.checking || cell.entry.face === TrackRowEntry.Working
        spacing: cell.checking ? Tokens.space.xs : Tokens.space.sm
        Accessible.role: Accessible.StaticText
        Accessible.name: cell.entry.statusLabel
        Accessible.description: cell.entry.halted ? qsTr("Interrupted") : ""

        Spinner {
            id: spinner

            objectName: "statusSpinner"
            anchors.verticalCenter: parent.verticalCenter
            visible: !cell.entry.halted
            color: cell.checking ? Tokens.color.secondary : Tokens.color.accent
        }

        Row {
            spacing: Tokens.space.xs

            Symbol {
                id: phase

                anchors.verticalCenter: parent.verticalCenter
                visible: !cell.checking
                name: cell.entry.statusSymbol
                size: Tokens.size.smallSymbol
            }

            TextLine {
                readable: cell.entry.statusText !== cell.entry.statusLabel
                width: Math.min(implicitWidth, cell.width - spinner.width - phase.width - Tokens.space.md)
                color: Tokens.color.secondary
                font: Tokens.font.caption
                text: cell.entry.statusText
            }
        }
    }

    ProgressLine {
        id: bar

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: cell.entry.face === TrackRowEntry.Downloading
        width: Tokens.size.rowBar
        label: cell.entry.statusLabel
        value: cell.entry.fraction
        valueText: cell.entry.percentText
    }

    TextLine {
        id: detail

        anchors.left: bar.right
        anchors.leftMargin: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        visible: bar.visible
        // It may run as far as the row's own face does, beyond the column.
        width: cell.width - bar.width
        elide: Text.ElideNone
        color: Tokens.color.secondary
        font: Tokens.font.caption
        text: bar.visible ? cell.entry.fittingDetail(width, detail.font) : ""
        Accessible.name: cell.entry.statusText
    }

    PushButton {
        objectName: "reviewButton"
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: cell.entry.face === TrackRowEntry.Review
        small: true
        stroked: false
        based: cell.entry.underReview
        focusPolicy: Qt.NoFocus
        fill: Tokens.color.orangeTint
        ink: Tokens.color.orange
        symbol: cell.entry.statusSymbol
        text: cell.entry.statusText
        label: cell.entry.statusLabel
        onClicked: cell.reviewed()
    }
}

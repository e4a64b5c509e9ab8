// The screen of the setup that has the engine's outside tools installed and shows how far that is.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    required property PrepareToolsLogic logic

    topPadding: Tokens.space.sm
    spacing: Tokens.space.lg
    Component.onCompleted: screen.logic.begin()

    Paragraph {
        width: parent.width
        text: qsTr("zelk needs a couple of small open-source tools (yt-dlp and ffmpeg) to download and convert audio.")
        color: Tokens.color.primary
    }

    SetupCard {
        width: parent.width

        Repeater {
            model: screen.logic.rows.length

            ToolProgressRow {
                required property int index

                objectName: "tool" + index
                width: parent?.width ?? 0
                tool: screen.logic.rows[index]
                divided: index > 0
            }
        }
    }

    SymbolLabel {
        objectName: "toolsReady"
        width: parent.width
        visible: screen.logic.ready
        symbol: "checkmark.circle"
        symbolInk: Tokens.color.green
        text: qsTr("All components are ready.")
    }

    TextLine {
        objectName: "toolsLog"
        width: parent.width
        visible: text !== ""
        elide: Text.ElideMiddle
        text: screen.logic.log
        color: Tokens.color.tertiary
        font: Tokens.font.log
    }

    Column {
        objectName: "toolsFailed"
        width: parent.width
        visible: screen.logic.failed
        spacing: Tokens.space.md

        SymbolLabel {
            objectName: "toolsFailure"
            width: parent.width
            visible: text !== ""
            symbol: "exclamationmark.triangle"
            symbolInk: Tokens.color.secondary
            symbolSize: Tokens.size.symbol
            ink: Tokens.color.secondary
            text: screen.logic.failure
        }

        Paragraph {
            width: parent.width
            text: screen.logic.advice
            font: Tokens.font.callout
        }

        PushButton {
            objectName: "toolsTryAgain"
            anchors.left: parent.left
            text: qsTr("Try Again")
            onClicked: screen.logic.tryAgain()
        }
    }
}

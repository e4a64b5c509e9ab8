// What is known of the track under review, its candidates, and a field for an address of the user's own.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: content

    required property ReviewLogic logic

    // The keyboard has come to what stands there.
    signal focusEntered(rect area)

    function tell(item: Item) {
        content.focusEntered(item.mapToItem(content, Qt.rect(0, 0, item.width, item.height)));
    }

    spacing: Tokens.space.lg

    Item {
        visible: content.logic.stepperText !== ""
        width: parent.width
        height: Tokens.size.smallButton

        TextLine {
            objectName: "reviewPosition"
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: content.logic.stepperText
            color: Tokens.color.secondary
            font: Tokens.font.calloutMedium
        }

        Row {
            anchors.right: parent.right

            IconButton {
                objectName: "previousReview"
                width: Tokens.size.smallButton
                height: Tokens.size.smallButton
                symbol: mirrored ? "chevron.right" : "chevron.left"
                symbolSize: Tokens.size.chevron
                label: qsTr("Previous")
                onClicked: content.logic.step(-1)
            }

            IconButton {
                objectName: "nextReview"
                width: Tokens.size.smallButton
                height: Tokens.size.smallButton
                symbol: mirrored ? "chevron.left" : "chevron.right"
                symbolSize: Tokens.size.chevron
                label: qsTr("Next")
                onClicked: content.logic.step(1)
            }
        }
    }

    Row {
        width: parent.width
        spacing: Tokens.space.md

        ArtworkView {
            id: cover

            size: Tokens.art.inspector
            cornerRadius: Tokens.radius.control
            ref: content.logic.artwork
            placeholderSymbol: "music.note"
        }

        Column {
            width: parent.width - cover.width - parent.spacing
            spacing: Tokens.space.xxs

            Paragraph {
                objectName: "reviewTitle"
                width: parent.width
                maximumLineCount: 2
                elide: Text.ElideRight
                text: content.logic.title
                color: Tokens.color.primary
                font: Tokens.font.title3
            }

            TextLine {
                width: parent.width
                text: content.logic.artist
                color: Tokens.color.secondary
                font: Tokens.font.callout
            }

            TextLine {
                width: parent.width
                visible: text !== ""
                text: content.logic.album
                color: Tokens.color.secondary
                font: Tokens.font.callout
            }

            Row {
                width: parent.width
                spacing: Tokens.space.xs

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "clock"
                    size: Tokens.size.smallSymbol
                }

                TextLine {
                    anchors.verticalCenter: parent.verticalCenter
                    text: content.logic.duration
                    color: Tokens.color.secondary
                    font: Tokens.font.callout
                }
            }
        }
    }

    ConfidenceMeter {
        width: parent.width
        value: content.logic.bestConfidence
        percent: content.logic.bestPercent
        fill: Tokens.color.fills[content.logic.bestInk]
    }

    Rectangle {
        width: parent.width
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }

    Column {
        width: parent.width
        spacing: Tokens.space.sm

        TextLine {
            visible: candidates.count > 0
            width: parent.width
            text: qsTr("Candidates")
            font: Tokens.font.calloutSemibold
        }

        Repeater {
            id: candidates

            model: content.logic.candidates

            CandidateRow {
                id: candidate

                required property var modelData

                width: parent ? parent.width : 0
                face: candidate.modelData
                picked: content.logic.selectedCandidateId === candidate.modelData.id
                onPicking: content.logic.selectedCandidateId = candidate.modelData.id
                onActiveFocusChanged: {
                    if (candidate.activeFocus)
                        content.tell(candidate);
                }
            }
        }

        Paragraph {
            visible: candidates.count === 0
            width: parent.width
            text: qsTr("No candidates returned. Paste a direct URL below to use instead.")
            font: Tokens.font.callout
        }
    }

    Column {
        width: parent.width
        spacing: Tokens.space.sm

        TextLine {
            width: parent.width
            text: qsTr("Or paste a direct URL")
            color: Tokens.color.secondary
            font: Tokens.font.caption
        }

        EntryField {
            id: address

            objectName: "pastedURL"
            width: parent.width
            label: qsTr("Or paste a direct URL")
            placeholderText: "https://"
            inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
            text: content.logic.pastedURL
            onTextEdited: content.logic.pastedURL = address.text
            onAccepted: content.logic.submitURL()
            onActiveFocusChanged: {
                if (address.activeFocus)
                    content.tell(address);
            }
        }
    }
}

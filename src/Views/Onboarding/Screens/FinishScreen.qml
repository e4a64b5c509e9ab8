// The last screen of the setup: what was chosen, with the last chance to save to another folder.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    required property SetupChoices choices

    topPadding: Tokens.space.lg + Tokens.space.xs

    FinishSeal {
        anchors.horizontalCenter: parent.horizontalCenter
    }

    Item {
        width: 1
        height: Tokens.space.lg
    }

    Paragraph {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("You're all set")
        color: Tokens.color.primary
        font: Tokens.font.title
        Accessible.role: Accessible.Heading
    }

    Item {
        width: 1
        height: Tokens.space.sm
    }

    Paragraph {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("zelk is ready to build your library.")
    }

    Item {
        width: 1
        height: Tokens.space.xl
    }

    SetupCard {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(Tokens.size.recapWidth, parent.width)

        Repeater {
            model: screen.choices.recap.length

            RecapRow {
                required property int index

                objectName: row.name
                row: screen.choices.recap[index]
                divided: index > 0
                onChanging: screen.choices.chooseFolder()
            }
        }
    }

    Item {
        width: 1
        height: Tokens.space.lg
    }

    Paragraph {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(Tokens.size.readingWidth, parent.width)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Select playlists in the sidebar and press Sync. Downloads land in your djay watch folder automatically.")
        font: Tokens.font.callout
    }
}

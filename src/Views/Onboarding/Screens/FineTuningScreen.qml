// The screen of the setup that chooses where files are saved and how good they are to be.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    required property SetupChoices choices

    spacing: Tokens.space.sm

    TextLine {
        anchors.left: parent.left
        text: qsTr("Download location")
        font: Tokens.font.headline
        Accessible.role: Accessible.Heading
    }

    SetupCard {
        width: parent.width

        Item {
            width: parent.width
            height: Tokens.size.recapRow

            FolderLine {
                objectName: "outputFolder"
                anchors.verticalCenter: parent.verticalCenter
                anchors.left: parent.left
                anchors.leftMargin: Tokens.space.lg
                anchors.right: parent.right
                anchors.rightMargin: Tokens.space.md
                symbol: "folder"
                path: screen.choices.outputDir
                small: true
                onChoosing: screen.choices.chooseFolder()
            }
        }
    }

    Paragraph {
        width: parent.width
        text: qsTr("Downloads are saved here and auto-imported into your djay library.")
        font: Tokens.font.caption
    }

    TextLine {
        anchors.left: parent.left
        topPadding: Tokens.space.lg
        text: qsTr("Download quality")
        font: Tokens.font.headline
        Accessible.role: Accessible.Heading
    }

    SetupCard {
        width: parent.width

        Repeater {
            model: screen.choices.qualities.length

            QualityOption {
                required property int index

                objectName: "quality" + index
                choice: screen.choices.qualities[index]
                divided: index > 0
                onActivated: screen.choices.chooseQuality(index)
            }
        }
    }
}

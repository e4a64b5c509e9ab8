// A source of audio: what it is, whether it is used, and its key where it takes one.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: row

    required property var info // a SourceChoice
    required property string token
    property bool divided: false

    signal switched(bool on)
    signal tokenEdited(string text)

    width: parent?.width ?? 0

    ServiceLine {
        id: line

        title: row.info.name
        subtitle: row.info.blurb
        titleFont: Tokens.font.bodyMedium
        iconSize: Tokens.size.sourceIcon
        padding: Tokens.space.sm
        divided: row.divided
        icon: ServiceIcon {
            assetName: row.info.assetName
            size: Tokens.size.sourceIcon
            tint: row.info.enabled ? Tokens.color.primary : Tokens.color.secondary
            fallbackSymbol: "music.note"
            accessibilityName: row.info.name
        }

        ToggleSwitch {
            objectName: "sourceSwitch"
            label: qsTr("Enable %1").arg(row.info.name)
            on: row.info.enabled
            onSwitched: on => row.switched(on)
        }
    }

    SpringReveal {
        objectName: "sourceKey"
        shown: row.info.takesKey && row.info.enabled

        SecretField {
            objectName: "sourceToken"
            anchors.left: parent?.left
            anchors.leftMargin: line.textStart
            width: (parent?.width ?? 0) - line.textStart - Tokens.space.lg
            placeholderText: row.info.keyPlaceholder
            text: row.token
            onTextChanged: row.tokenEdited(text)
        }

        Item {
            width: 1
            height: Tokens.space.md
        }
    }
}

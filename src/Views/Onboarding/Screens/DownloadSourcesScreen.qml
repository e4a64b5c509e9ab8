// The screen of the setup that chooses where audio is found, and the tunnel that it may come through.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: screen

    required property SetupChoices choices

    SetupCard {
        width: parent.width

        Repeater {
            model: screen.choices.sources.length

            SourceRow {
                required property int index

                objectName: "source" + index
                info: screen.choices.sources[index]
                divided: index > 0
                // Only one of them takes a key.
                token: info.takesKey ? screen.choices.soundcloudToken : ""
                onSwitched: on => screen.choices.setSourceEnabled(index, on)
                onTokenEdited: text => screen.choices.soundcloudToken = text
            }
        }
    }

    TextLine {
        anchors.left: parent.left
        topPadding: Tokens.space.lg
        bottomPadding: Tokens.space.sm
        text: qsTr("Privacy")
        color: Tokens.color.secondary
        font: Tokens.font.category
    }

    SetupCard {
        width: parent.width

        ServiceLine {
            id: tunnel

            title: qsTr("Vantrix VPN")
            titleFont: Tokens.font.bodyMedium
            iconSize: Tokens.size.sourceIcon
            padding: Tokens.space.md
            icon: ServiceIcon {
                assetName: "ServiceVPN"
                size: Tokens.size.sourceIcon
                fallbackSymbol: "lock.shield"
                accessibilityName: qsTr("Vantrix VPN")
            }
        }

        SecretField {
            objectName: "proxySubscription"
            anchors.left: parent?.left
            anchors.leftMargin: tunnel.textStart
            width: (parent?.width ?? 0) - tunnel.textStart - Tokens.space.lg
            placeholderText: qsTr("Vantrix VPN subscription URL (optional)")
            text: screen.choices.proxySubscription
            onTextChanged: screen.choices.proxySubscription = text
        }

        Item {
            width: 1
            height: Tokens.space.md
        }
    }
}

// The one message of the application, until it is dismissed or replaced.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: banner

    required property BannerLogic logic

    objectName: "banner"
    implicitHeight: content.height + 2 * Tokens.space.sm
    role: GlassBackground.Floating
    ground: Tokens.color.card
    shadow: Tokens.color.bannerShadow
    radius: Tokens.radius.card
    Accessible.role: Accessible.AlertMessage
    Accessible.name: banner.logic.message

    Item {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        y: Tokens.space.sm
        width: parent.width - 2 * Tokens.space.md
        height: Math.max(message.implicitHeight, Tokens.size.smallButton)

        Symbol {
            id: symbol

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            name: banner.logic.symbol
            color: Tokens.color.inks[banner.logic.ink]
            size: Tokens.size.bannerSymbol
        }

        Paragraph {
            id: message

            anchors.left: symbol.right
            anchors.leftMargin: Tokens.space.sm
            anchors.right: reconnect.visible ? reconnect.left : dismiss.left
            anchors.rightMargin: Tokens.space.sm
            anchors.verticalCenter: parent.verticalCenter
            text: banner.logic.message
            color: Tokens.color.primary
            font: Tokens.font.callout
        }

        PushButton {
            id: reconnect

            objectName: "reconnectBanner"
            anchors.right: dismiss.left
            anchors.rightMargin: Tokens.space.sm
            anchors.verticalCenter: parent.verticalCenter
            visible: banner.logic.offersReconnect
            small: true
            text: qsTr("Reconnect")
            onClicked: banner.logic.reconnect()
        }

        IconButton {
            id: dismiss

            objectName: "dismissBanner"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Tokens.size.smallButton
            height: Tokens.size.smallButton
            symbol: "xmark"
            label: qsTr("Dismiss")
            onClicked: banner.logic.dismiss()
        }
    }
}

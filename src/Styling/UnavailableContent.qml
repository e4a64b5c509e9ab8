// What stands where there is nothing to show: a symbol, why, and where it helps a way out.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: content

    required property string symbol
    required property string title
    required property string description
    property string actionText: ""
    property bool compact: false // in the sidebar

    signal activated

    Column {
        anchors.centerIn: parent
        width: Math.min(Tokens.size.readingWidth, content.width - 2 * Tokens.space.lg)

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: content.symbol
            color: Tokens.color.tertiary
            size: content.compact ? Tokens.size.smallEmptySymbol : Tokens.size.emptySymbol
        }

        Item {
            width: 1
            height: Tokens.space.lg
        }

        Paragraph {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: content.title
            color: Tokens.color.primary
            font: content.compact ? Tokens.font.title3 : Tokens.font.emptyTitle
        }

        Item {
            width: 1
            height: Tokens.space.sm
        }

        Paragraph {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: content.description
            font: content.compact ? Tokens.font.callout : Tokens.font.body
        }

        Item {
            width: 1
            height: Tokens.space.lg
            visible: action.visible
        }

        PushButton {
            id: action

            objectName: "unavailableAction"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: content.actionText !== ""
            text: content.actionText
            onClicked: content.activated()
        }
    }
}

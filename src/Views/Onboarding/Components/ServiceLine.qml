// A service in the setup: its mark, what it is for, and at the end whatever is done with it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: line

    required property string title
    property string subtitle: ""
    property alias icon: place.data
    default property alias control: controls.data
    property font titleFont: Tokens.font.headline
    property int iconSize: Tokens.size.serviceIcon
    property int padding: Tokens.space.md
    property bool divided: false
    // How far from the edge its words begin.
    readonly property real textStart: Tokens.space.lg + place.width + words.anchors.leftMargin

    width: parent?.width ?? 0
    implicitHeight: Math.max(words.height, place.height) + 2 * line.padding

    Rectangle {
        anchors.left: words.left
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: line.divided
        color: Tokens.color.divider
    }

    Item {
        id: place

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        width: line.iconSize
        height: width
    }

    Column {
        id: words

        anchors.left: place.right
        anchors.leftMargin: Tokens.space.md
        anchors.right: controls.left
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xxs

        Paragraph {
            width: parent.width
            text: line.title
            color: Tokens.color.primary
            font: line.titleFont
        }

        Paragraph {
            width: parent.width
            visible: text !== ""
            text: line.subtitle
            font: Tokens.font.callout
        }
    }

    Row {
        id: controls

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm
    }
}

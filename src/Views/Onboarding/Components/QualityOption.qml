// One choice of quality, which is pressed anywhere on it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ChoiceControl {
    id: option

    required property var choice // a QualityChoice
    property bool divided: false

    label: option.choice.name
    role: Accessible.RadioButton
    on: option.choice.selected
    width: parent?.width ?? 0
    implicitHeight: words.height + 2 * Tokens.space.md
    Accessible.description: option.choice.blurb
    Accessible.selectable: true
    Accessible.selected: option.on

    Rectangle {
        anchors.fill: parent
        radius: Tokens.radius.card
        visible: option.hovered || option.pressed
        color: option.pressed ? Tokens.color.pressed : Tokens.color.hover
    }

    Rectangle {
        anchors.left: words.left
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: option.divided
        color: Tokens.color.divider
    }

    Symbol {
        id: mark

        objectName: "qualityMark"
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        name: option.on ? "largecircle.fill.circle" : "circle"
        color: option.on ? Tokens.color.accent : Tokens.color.secondary
        size: Tokens.size.check
    }

    Column {
        id: words

        anchors.left: mark.right
        anchors.leftMargin: Tokens.space.md
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.lg
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xxs

        TextLine {
            width: parent.width
            readable: false
            text: option.choice.name
            font: Tokens.font.bodyMedium
        }

        Paragraph {
            width: parent.width
            text: option.choice.blurb
            font: Tokens.font.callout
        }
    }

    FocusRing {
        visible: option.activeFocus
        controlRadius: Tokens.radius.card
        anchors.margins: 0
    }
}

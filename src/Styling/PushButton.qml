// The button with a label, in every kind: its colours say which. A prominent one is asked for with its fill.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.AbstractButton {
    id: button

    property string symbol: ""
    property string hint: ""
    // What a screen reader calls it, where that isn't what it says.
    property string label: button.text
    property bool small: false
    property bool prominent: false
    // Short of room, a button with a symbol may do without its words.
    property bool bare: false
    readonly property real bareRoom: words.implicitWidth + line.spacing // what it saves so
    // As wide as it is with its words, whether they show or not.
    readonly property real fullWidth: button.leftPadding + button.rightPadding + words.implicitWidth
                                      + (mark.visible ? mark.width + line.spacing : 0)
                                      + (arrow.visible ? arrow.width + line.spacing : 0)
    property bool stroked: !button.prominent
    // On a selected row a translucent fill needs a base, or its text is too faint.
    property bool based: false
    // What it opens drops down from it, which a chevron says.
    property bool opensMenu: false
    property color fill: button.prominent ? Tokens.color.accentFill : Tokens.color.button
    property color ink: button.prominent ? Tokens.color.onAccent : Tokens.color.primary
    property color symbolInk: button.ink

    function press() {
        if (!button.enabled)
            return;
        if (button.action)
            button.action.trigger(button);
        else
            button.clicked();
    }

    implicitWidth: button.leftPadding + contentItem.implicitWidth + button.rightPadding
    implicitHeight: button.small ? Tokens.size.smallButton : Tokens.size.button
    leftPadding: button.small ? Tokens.space.sm : Tokens.space.md
    rightPadding: button.leftPadding
    font: button.small ? Tokens.font.captionMedium : Tokens.font.bodyMedium
    opacity: button.enabled ? 1 : Tokens.size.disabledOpacity
    focusPolicy: Qt.TabFocus
    Accessible.role: button.opensMenu ? Accessible.ButtonMenu : Accessible.Button
    Accessible.name: button.label
    Accessible.description: button.hint
    Accessible.onPressAction: button.press()
    Keys.onReturnPressed: button.press()
    Keys.onEnterPressed: button.press()
    // Hidden, it would keep the keys to itself.
    onVisibleChanged: {
        if (!button.visible && button.activeFocus)
            button.focus = false;
    }

    background: Rectangle {
        color: button.based ? Tokens.color.card : button.fill
        radius: button.small ? Tokens.radius.chip : Tokens.radius.control
        border.width: button.stroked ? Tokens.size.hairline : 0
        border.color: Tokens.color.buttonStroke

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: button.based
            color: button.fill
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: button.hovered || button.down
            color: button.prominent ? button.down ? Tokens.color.fillPressed : Tokens.color.fillHover
                                    : button.down ? Tokens.color.pressed : Tokens.color.hover
        }

        FocusRing {
            visible: button.visualFocus
            controlRadius: parent.radius
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        implicitWidth: line.implicitWidth

        Row {
            id: line

            anchors.centerIn: parent
            spacing: button.small ? Tokens.space.xs : Tokens.space.sm

            Symbol {
                id: mark

                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== ""
                name: button.symbol
                color: button.symbolInk
                size: button.small ? Tokens.size.smallSymbol : Tokens.size.symbol
            }

            TextLine {
                id: words

                anchors.verticalCenter: parent.verticalCenter
                visible: button.text !== "" && !button.bare
                readable: false
                text: button.text
                color: button.ink
                font: button.font
            }

            Symbol {
                id: arrow

                anchors.verticalCenter: parent.verticalCenter
                visible: button.opensMenu
                name: "chevron.down"
                size: Tokens.size.chevron
            }
        }
    }

    Hint {
        visible: button.hovered && button.hint !== ""
        text: button.hint
    }
}

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
    property bool stroked: !button.prominent
    // On a selected row a translucent fill needs a base, or its text is too faint.
    property bool based: false
    // Shows the symbol alone, where there is no room for more; the text becomes a hint.
    property bool terse: false
    // The width that it wants with its text, terse or not.
    readonly property real fullWidth: button.leftPadding + wording.advanceWidth + button.rightPadding
                                      + (button.symbol === "" ? 0 : button.symbolSize + button.spacing)
                                      + (button.opensMenu ? Tokens.size.chevron + button.spacing : 0)
    readonly property int symbolSize: button.small ? Tokens.size.smallSymbol : Tokens.size.symbol
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
    spacing: button.small ? Tokens.space.xs : Tokens.space.sm
    font: button.small ? Tokens.font.captionMedium : Tokens.font.bodyMedium
    opacity: button.enabled ? 1 : Tokens.size.disabledOpacity
    focusPolicy: Qt.TabFocus
    Accessible.role: button.opensMenu ? Accessible.ButtonMenu : Accessible.Button
    Accessible.name: button.label
    Accessible.description: button.hint
    Accessible.onPressAction: button.press()
    Keys.onReturnPressed: button.press()
    Keys.onEnterPressed: button.press()

    TextMetrics {
        id: wording

        font: button.font
        text: button.text
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

    contentItem: Item {
        implicitWidth: children[0].implicitWidth

        Row {
            anchors.centerIn: parent
            spacing: button.spacing

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== ""
                name: button.symbol
                color: button.symbolInk
                size: button.symbolSize
            }

            TextLine {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.text !== "" && !button.terse
                readable: false
                text: button.text
                color: button.ink
                font: button.font
            }

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.opensMenu
                name: "chevron.down"
                size: Tokens.size.chevron
            }
        }
    }

    Hint {
        visible: button.hovered && text !== ""
        text: button.hint === "" && button.terse ? button.text : button.hint
    }
}

// The button that is only a symbol; its label is for the screen reader and the note under the pointer.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.AbstractButton {
    id: button

    required property string symbol
    required property string label
    property string hint: button.label
    property int symbolSize: Tokens.size.smallSymbol

    function press() {
        if (button.enabled)
            button.clicked();
    }

    implicitWidth: Tokens.size.button
    implicitHeight: Tokens.size.button
    opacity: button.enabled ? 1 : Tokens.size.disabledOpacity
    focusPolicy: Qt.TabFocus
    Accessible.name: button.label
    Accessible.onPressAction: button.press()
    Keys.onReturnPressed: button.press()
    Keys.onEnterPressed: button.press()

    background: Rectangle {
        radius: Tokens.radius.chip
        color: button.down ? Tokens.color.pressed : button.hovered ? Tokens.color.hover
                                                                   : Qt.alpha(Tokens.color.hover, 0)

        FocusRing {
            visible: button.visualFocus
            controlRadius: parent.radius
        }
    }

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            size: button.symbolSize
        }
    }

    Hint {
        visible: button.hovered && !button.down && button.hint !== ""
        text: button.hint
    }
}

// What can be pressed: pointer, keys and screen reader do the same with it. What it looks like is for its user to draw.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: control

    // What a screen reader calls it.
    required property string label
    property int role: Accessible.Button
    readonly property alias hovered: hover.hovered
    readonly property alias pressed: tap.pressed

    signal activated
    signal tapped // by the pointer, which activates as well

    function press() {
        if (control.enabled)
            control.activated();
    }

    opacity: control.enabled ? 1 : Tokens.size.disabledOpacity
    activeFocusOnTab: true
    Accessible.role: control.role
    Accessible.name: control.label
    Accessible.focusable: control.activeFocusOnTab
    Accessible.focused: control.activeFocus
    Accessible.onPressAction: control.press()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (event.accepted && !event.isAutoRepeat)
            control.press();
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        id: tap

        // What lies under it is to be left alone.
        gesturePolicy: TapHandler.WithinBounds
        onTapped: {
            control.tapped();
            control.press();
        }
    }
}

// Lessens and raises a number by steps, as far as its ends; the number itself stands beside it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: stepper

    // What a screen reader calls it, with the number in it.
    required property string label
    // It shows what it is told and asks for another; a number beyond an end can be stepped back from there.
    required property real current
    required property real minimum
    required property real maximum
    property real step: 1
    readonly property bool lessens: stepper.current > stepper.minimum
    readonly property bool raises: stepper.current < stepper.maximum
    // What a screen reader reads, and may set.
    property real value: stepper.current
    readonly property real minimumValue: stepper.minimum
    readonly property real maximumValue: stepper.maximum
    readonly property real stepSize: stepper.step

    signal picked(real number)

    function pick(number: real) {
        if (stepper.enabled)
            stepper.picked(Math.max(stepper.minimum, Math.min(stepper.maximum, number)));
    }

    function lessen() {
        if (stepper.lessens)
            stepper.pick(stepper.current - stepper.step);
    }

    function raise() {
        if (stepper.raises)
            stepper.pick(stepper.current + stepper.step);
    }

    implicitWidth: Tokens.size.stepperWidth
    implicitHeight: Tokens.size.stepperHeight
    opacity: stepper.enabled ? 1 : Tokens.size.disabledOpacity
    activeFocusOnTab: true
    onValueChanged: {
        if (stepper.value === stepper.current)
            return;
        const asked = stepper.value;
        stepper.value = Qt.binding(() => stepper.current);
        stepper.pick(asked);
    }
    Accessible.role: Accessible.SpinBox
    Accessible.name: stepper.label
    Accessible.focusable: true
    Accessible.focused: stepper.activeFocus
    Accessible.onIncreaseAction: stepper.raise()
    Accessible.onDecreaseAction: stepper.lessen()
    Keys.onUpPressed: stepper.raise()
    Keys.onDownPressed: stepper.lessen()
    Keys.onPressed: event => {
        event.accepted = true;
        if (event.key === Qt.Key_Plus)
            stepper.raise();
        else if (event.key === Qt.Key_Minus)
            stepper.lessen();
        else
            event.accepted = false;
    }

    component Half: Pressable {
        id: half

        required property string symbol

        width: parent.width / 2
        height: parent.height
        opacity: half.enabled || !stepper.enabled ? 1 : Tokens.size.disabledOpacity
        activeFocusOnTab: false

        Rectangle {
            anchors.fill: parent
            anchors.margins: Tokens.space.xxs
            radius: Tokens.radius.chip
            visible: half.hovered || half.pressed
            color: half.pressed ? Tokens.color.pressed : Tokens.color.hover
        }

        Symbol {
            anchors.centerIn: parent
            name: half.symbol
            color: Tokens.color.primary
            size: Tokens.size.smallSymbol
        }
    }

    Rectangle {
        id: face

        anchors.fill: parent
        radius: Tokens.radius.control
        color: Tokens.color.button
        border.width: Tokens.size.hairline
        border.color: Tokens.color.buttonStroke

        Half {
            objectName: "stepperLess"
            anchors.left: parent.left
            label: qsTr("Decrease %1").arg(stepper.label)
            symbol: "minus"
            enabled: stepper.lessens
            onActivated: stepper.lessen()
        }

        Rectangle {
            anchors.centerIn: parent
            width: Tokens.size.hairline
            height: Tokens.size.symbol
            color: Tokens.color.divider
        }

        Half {
            objectName: "stepperMore"
            anchors.right: parent.right
            label: qsTr("Increase %1").arg(stepper.label)
            symbol: "plus"
            enabled: stepper.raises
            onActivated: stepper.raise()
        }

        FocusRing {
            visible: stepper.activeFocus
            controlRadius: face.radius
        }
    }
}

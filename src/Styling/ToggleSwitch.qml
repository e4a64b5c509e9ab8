// The switch: on or off, in effect at once.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

ChoiceControl {
    id: control

    // The knob stands where the text ends while it is on.
    readonly property bool knobAtRight: control.on !== control.LayoutMirroring.enabled

    signal switched(bool on)

    implicitWidth: Tokens.size.switchWidth
    implicitHeight: Tokens.size.switchHeight
    onActivated: control.switched(!control.on)

    Rectangle {
        id: track

        anchors.fill: parent
        radius: height / 2
        color: control.on ? Tokens.color.accentFill : Tokens.color.switchOff
        border.width: control.on || Tokens.glass.usesTranslucency ? 0 : Tokens.size.hairline
        border.color: Tokens.color.secondary

        Behavior on color {
            ColorAnimation {
                duration: Tokens.motion.toggle
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: control.hovered || control.pressed
            color: control.pressed ? Tokens.color.fillPressed : Tokens.color.fillHover
        }

        Rectangle {
            x: control.knobAtRight ? track.width - width - Tokens.size.switchInset : Tokens.size.switchInset
            anchors.verticalCenter: parent.verticalCenter
            width: Tokens.size.switchKnob
            height: width
            radius: width / 2
            color: Tokens.color.onAccent

            Behavior on x {
                NumberAnimation {
                    duration: Tokens.motion.toggle
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            visible: control.activeFocus
            controlRadius: track.radius
        }
    }
}

// How far the setup is: a dot for each step.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Row {
    id: dots

    required property int total
    required property int current

    objectName: "stepDots"
    spacing: Tokens.space.sm
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Step %1 of %2").arg(dots.current + 1).arg(dots.total)

    Repeater {
        model: dots.total

        Rectangle {
            required property int index

            objectName: "stepDot"
            anchors.verticalCenter: parent?.verticalCenter
            width: index === dots.current ? Tokens.size.currentStepDot : Tokens.size.stepDot
            height: width
            radius: width / 2
            color: index === dots.current ? Tokens.color.accentFill : index < dots.current ? Tokens.color.stepBehind
                                                                                           : Tokens.color.stepAhead
        }
    }
}

// Says that something is under way, without saying how far; stands still as a ring where motion is unwanted.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SpinnerRing {
    id: spinner

    property int size: Tokens.size.spinner

    width: spinner.size
    height: spinner.size
    color: Tokens.color.secondary
    arc: !Tokens.motion.reduced

    Timer {
        interval: Tokens.motion.spinnerStep
        repeat: true
        running: spinner.visible && spinner.arc
        onTriggered: spinner.rotation += Tokens.motion.spinnerAngle
    }
}

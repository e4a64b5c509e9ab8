// Says that something is under way, without saying how far; stands still as a ring where motion is unwanted.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Symbol {
    id: spinner

    readonly property bool turns: !Tokens.motion.reduced

    size: Tokens.size.spinner
    name: spinner.turns ? "spinner" : "spinner.still"

    Timer {
        interval: Tokens.motion.spinnerStep
        repeat: true
        running: spinner.visible && spinner.turns
        onTriggered: spinner.rotation += Tokens.motion.spinnerAngle
    }
}

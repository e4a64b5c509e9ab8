// One of several, of which one is picked; pressing the picked one picks it again.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

MarkedChoice {
    id: radio

    signal picked

    role: Accessible.RadioButton
    markRadius: Tokens.size.check / 2
    onActivated: radio.picked()

    Symbol {
        name: radio.on ? "largecircle.fill.circle" : "circle"
        color: radio.on ? Tokens.color.accent : Tokens.color.secondary
        size: Tokens.size.check
    }
}

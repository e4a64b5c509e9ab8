// Holds what is there only at times, and lets it come and go with a spring.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: reveal

    required property bool shown
    default property alias content: body.data

    width: parent?.width ?? 0
    height: reveal.shown ? body.height : 0
    clip: height < body.height
    visible: height > 0

    Behavior on height {
        enabled: reveal.Window.window?.visible ?? false

        NumberAnimation {
            duration: Tokens.motion.spring
            easing.bezierCurve: Tokens.motion.springCurve
        }
    }

    Column {
        id: body

        width: parent.width
        enabled: reveal.shown
    }
}

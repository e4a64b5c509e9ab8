// The bar that fills the way that text runs.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: bar

    required property string label
    required property real value // 0 to 1
    required property string valueText
    property color fill: Tokens.color.accentFill
    property bool readable: true
    // Not in rows: a row that takes another track must not slide there.
    property bool animated: false
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: Tokens.size.bar
    Accessible.role: Accessible.ProgressBar
    Accessible.name: bar.label
    Accessible.description: bar.valueText
    Accessible.ignored: !bar.readable

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Tokens.color.barTrack
    }

    Rectangle {
        anchors.left: parent.left
        height: parent.height
        radius: height / 2
        visible: bar.value > 0
        color: bar.fill
        width: Math.max(height, bar.width * Math.min(1, bar.value))

        Behavior on width {
            enabled: bar.animated && bar.visible

            NumberAnimation {
                duration: Tokens.motion.bar
            }
        }
    }
}

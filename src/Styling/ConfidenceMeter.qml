// How sure a match is, as a bar with its percentage.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: meter

    required property real value // 0 to 1
    required property int percent
    required property color fill
    property bool showsPercent: true

    objectName: "confidenceMeter"
    implicitHeight: words.height + Tokens.space.xs + bar.height
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Match confidence")
    Accessible.description: qsTr("%1 percent").arg(meter.percent)

    Item {
        id: words

        width: parent.width
        height: label.implicitHeight

        TextLine {
            id: label

            anchors.left: parent.left
            readable: false
            text: qsTr("Confidence")
            color: Tokens.color.secondary
            font: Tokens.font.caption
        }

        TextLine {
            anchors.right: parent.right
            readable: false
            visible: meter.showsPercent
            text: qsTr("%1%").arg(meter.percent)
            font: Tokens.font.captionSemibold
        }
    }

    ProgressLine {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        height: Tokens.size.meter
        readable: false
        label: ""
        valueText: ""
        value: meter.value
        fill: meter.fill
        animated: true
    }
}

// Where a file came from: the source's glyph in its colour, and its name.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: badge

    required property string label
    required property string symbol
    required property color brand
    readonly property real lead: glyph.visible ? glyph.width + Tokens.space.xs : 0

    implicitHeight: name.implicitHeight
    implicitWidth: badge.lead + name.implicitWidth
    visible: badge.label !== ""
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Source %1").arg(badge.label)

    Symbol {
        id: glyph

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        visible: badge.symbol !== ""
        name: badge.symbol
        color: badge.brand
        size: Tokens.size.smallSymbol
    }

    TextLine {
        id: name

        anchors.verticalCenter: parent.verticalCenter
        readable: false
        anchors.left: parent.left
        anchors.leftMargin: badge.lead
        anchors.right: parent.right
        text: badge.label
        color: Tokens.color.secondary
        font: Tokens.font.calloutMedium
    }
}

// One fact about a file's quality on a chip; without one there is no badge.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: badge

    required property string text

    objectName: "qualityBadge"
    implicitWidth: fact.implicitWidth + 2 * fact.x
    implicitHeight: fact.implicitHeight + 2 * fact.y
    visible: badge.text !== ""
    role: GlassBackground.Chip
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Quality %1").arg(badge.text)

    TextLine {
        id: fact

        x: Tokens.size.badgeInset
        y: Tokens.size.hairline
        readable: false
        text: badge.text
        color: Tokens.color.secondary
        font: Tokens.font.caption2Semibold
    }
}

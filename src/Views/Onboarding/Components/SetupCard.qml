// A card that holds rows of the setup, under each other.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: card

    default property alias rows: body.data

    implicitHeight: body.height
    role: GlassBackground.GroupCard

    Column {
        id: body

        width: parent.width
    }
}

// A surface in its role: as see-through as the window's surfaces are to be, with its stroke and its shadow.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassSurface {
    id: surface

    property color shadowColor: Tokens.color.shadow

    colors: Tokens.color
    glass: Tokens.glass

    GlassShadow {
        anchors.fill: parent
        anchors.margins: -Tokens.size.shadowBlur
        anchors.topMargin: Tokens.size.shadowOffset - Tokens.size.shadowBlur
        anchors.bottomMargin: -Tokens.size.shadowBlur - Tokens.size.shadowOffset
        z: -1
        visible: surface.castsShadow
        radius: surface.radius
        blur: Tokens.size.shadowBlur
        color: surface.shadowColor
    }
}

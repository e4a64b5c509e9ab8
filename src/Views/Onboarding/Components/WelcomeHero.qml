// The head of the welcome: the application's wave in a circle that grows a little as it appears.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: hero

    property bool animate: false
    readonly property bool grown: hero.animate && !Tokens.motion.reduced

    objectName: "welcomeHero"
    width: Tokens.size.hero
    height: width
    radius: width / 2
    color: Tokens.color.heroFill
    border.width: Tokens.size.hairline
    border.color: Tokens.color.heroStroke
    scale: hero.grown ? 1 : Tokens.size.heroAtRest
    Accessible.ignored: true
    Component.onCompleted: hero.animate = true

    Behavior on scale {
        NumberAnimation {
            duration: Tokens.motion.hero
            easing.type: Easing.OutCubic
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: Tokens.size.heroCore
        height: width
        radius: width / 2
        color: Tokens.color.heroFill
    }

    Symbol {
        anchors.centerIn: parent
        name: "waveform"
        color: Tokens.color.accentFill
        size: Tokens.size.heroSymbol
    }
}

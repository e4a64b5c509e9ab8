// The head of the last screen: the seal of a setup that is complete, which bounces once as it appears.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Rectangle {
    id: seal

    property int bounce: 0

    objectName: "finishSeal"
    width: Tokens.size.seal
    height: width
    radius: width / 2
    color: Tokens.color.sealFill
    border.width: Tokens.size.hairline
    border.color: Tokens.color.sealStroke
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Setup complete")
    Component.onCompleted: {
        if (!Tokens.motion.reduced)
            seal.bounce += 1;
    }
    onBounceChanged: bouncing.restart()

    Symbol {
        id: mark

        anchors.centerIn: parent
        name: "checkmark.seal.fill"
        color: Tokens.color.greenFill
        size: Tokens.size.heroSymbol
    }

    NumberAnimation {
        id: bouncing

        target: mark
        property: "scale"
        from: Tokens.size.sealAtRest
        to: 1
        duration: Tokens.motion.hero
        easing.type: Easing.OutBack
    }
}

// How the connection to an account stands, or the button that makes it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Row {
    id: control

    required property int connection // a ConnectMusicLogic.Control
    required property string service
    required property color brand
    required property color brandInk

    signal activated

    StatusPill {
        objectName: "accountConnected"
        visible: control.connection === ConnectMusicLogic.Connected
        text: qsTr("Connected")
        symbol: "checkmark.circle.fill"
        ink: Tokens.color.green
    }

    Spinner {
        objectName: "accountConnecting"
        visible: control.connection === ConnectMusicLogic.Connecting
        size: Tokens.size.symbol
        color: Tokens.color.accent
        Accessible.role: Accessible.ProgressBar
        Accessible.name: qsTr("Connecting to %1").arg(control.service)
    }

    PushButton {
        objectName: "accountConnect"
        visible: control.connection === ConnectMusicLogic.Connect
        prominent: true
        fill: control.brand
        ink: control.brandInk
        text: qsTr("Connect")
        hint: qsTr("Connect %1").arg(control.service)
        onClicked: control.activated()
    }
}

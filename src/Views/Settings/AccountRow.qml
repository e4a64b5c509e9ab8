// How a source of playlists stands, and a button that changes it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

FormRow {
    id: row

    required property var face // an AccountFace
    property bool live: true

    signal activated

    StatusPill {
        objectName: "state"
        anchors.verticalCenter: parent.verticalCenter
        visible: row.face.state !== ""
        text: row.face.state
        symbol: row.face.symbol
        ink: Tokens.color.inks[row.face.ink]
    }

    PushButton {
        objectName: "action"
        visible: row.face.action !== ""
        enabled: row.live
        text: row.face.action
        ink: row.face.destructive ? Tokens.color.red : Tokens.color.primary
        // The buttons of two rows may read the same.
        Accessible.description: row.title
        onClicked: row.activated()
    }
}

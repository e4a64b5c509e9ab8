// The field for a text that isn't to be read over somebody's shoulder; a button at its end shows it all the same.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

EntryField {
    id: field

    property bool revealed: false

    label: field.placeholderText
    trailing: reveal.visible ? reveal.width + Tokens.space.xs : Tokens.space.sm
    opacity: field.enabled ? 1 : Tokens.size.disabledOpacity
    echoMode: field.revealed ? TextInput.Normal : TextInput.Password
    inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
    onLengthChanged: {
        if (field.length === 0)
            field.revealed = false;
    }

    IconButton {
        id: reveal

        objectName: "reveal"
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.xxs
        anchors.verticalCenter: parent.verticalCenter
        width: Tokens.size.smallButton + Tokens.space.xxs
        height: width
        visible: field.length > 0
        symbol: field.revealed ? "eye.slash" : "eye"
        label: field.revealed ? qsTr("Hide %1").arg(field.label) : qsTr("Show %1").arg(field.label)
        onClicked: field.revealed = !field.revealed
    }
}

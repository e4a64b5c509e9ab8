// What is on or off, or one of several. It shows what it is told and asks for the other; whether that comes is for its
// user to say.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Pressable {
    id: control

    property bool on: false

    role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: control.on
    Accessible.onToggleAction: control.press()
}

// A row of a form with a switch.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

FormRow {
    id: row

    property bool on: false
    property alias switchName: toggle.objectName

    signal switched(bool on)

    readable: false

    ToggleSwitch {
        id: toggle

        label: row.title
        on: row.on
        onSwitched: on => row.switched(on)
    }
}

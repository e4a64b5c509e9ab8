// The tunnel in the toolbar: how it stands, and a menu to turn it on and off and to test it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

PushButton {
    id: control

    required property VPNLogic logic

    objectName: "toolbarVPN"
    text: control.logic.labelText
    label: qsTr("Vantrix VPN")
    hint: control.logic.statusText
    symbol: control.logic.symbol
    symbolInk: Tokens.color.inks[control.logic.ink]
    opensMenu: true
    onClicked: menu.visible ? menu.close() : menu.open()
    onVisibleChanged: menu.close()

    MenuPanel {
        id: menu

        x: control.mirrored ? 0 : control.width - menu.width
        y: control.height + Tokens.space.xs
        closePolicy: MenuPanel.CloseOnEscape | MenuPanel.CloseOnPressOutsideParent

        MenuNote {
            objectName: "menuVPNStatus"
            text: control.logic.statusText
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuVPNToggle"
            text: control.logic.enabled ? qsTr("Turn Vantrix VPN Off") : qsTr("Turn Vantrix VPN On")
            onTriggered: control.logic.toggle()
        }

        MenuEntry {
            objectName: "menuVPNTest"
            enabled: control.logic.canTest
            text: qsTr("Test Connection…")
            onTriggered: control.logic.runTest()
        }
    }
}

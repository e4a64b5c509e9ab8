// The button that shows the choice made, and drops the choices down.
pragma ComponentBehavior: Bound

import QtQuick
import QtQml.Models
import zelk

Pressable {
    id: button

    required property var choices // texts
    // The choice made; anything else for none. It shows what it is told: `picked` asks for another.
    required property int current
    readonly property string currentText: button.choices[button.current] ?? ""

    signal picked(int index)

    function drop() {
        if (menu.visible)
            return menu.close();
        menu.returnsFocus = button.activeFocus;
        menu.open();
        menu.currentIndex = button.currentText === "" ? 0 : button.current;
    }

    implicitWidth: Math.max(Tokens.size.popUp, words.implicitWidth + arrow.width + Tokens.space.sm + 2 * Tokens.space.md)
    implicitHeight: Tokens.size.button
    role: Accessible.ButtonMenu
    onActivated: button.drop()
    onVisibleChanged: menu.close()
    Accessible.description: button.currentText
    Keys.onUpPressed: button.press()
    Keys.onDownPressed: button.press()

    Rectangle {
        anchors.fill: parent
        color: Tokens.color.button
        radius: Tokens.radius.control
        border.width: Tokens.size.hairline
        border.color: Tokens.color.buttonStroke

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: button.hovered || button.pressed
            color: button.pressed ? Tokens.color.pressed : Tokens.color.hover
        }

        FocusRing {
            visible: button.activeFocus
            controlRadius: parent.radius
        }
    }

    TextLine {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        anchors.right: arrow.left
        anchors.rightMargin: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        text: button.currentText
    }

    Symbol {
        id: arrow

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        name: "popup"
        size: Tokens.size.smallSymbol
    }

    MenuPanel {
        id: menu

        property bool returnsFocus: false

        y: button.height + Tokens.space.xs
        implicitWidth: button.width
        closePolicy: MenuPanel.CloseOnEscape | MenuPanel.CloseOnPressOutsideParent
        focus: true
        onClosed: {
            if (menu.returnsFocus)
                button.forceActiveFocus(Qt.PopupFocusReason);
        }

        Instantiator {
            model: button.choices
            delegate: MenuEntry {
                required property int index
                required property string modelData

                text: modelData
                onTriggered: button.picked(index)
            }
            onObjectAdded: (index, entry) => menu.insertItem(index, entry)
            onObjectRemoved: (index, entry) => menu.removeItem(entry)
        }
    }
}

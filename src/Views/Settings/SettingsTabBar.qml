// The tabs of the settings side by side; the arrows go from one to the next.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

FocusScope {
    id: bar

    required property SettingsLogic logic

    // The window opens with the keyboard on its tab, which needs no ring until a key is pressed.
    property bool ringed: false

    // By that many places on the screen.
    function goAcross(places: int) {
        bar.go(bar.logic.current + (bar.LayoutMirroring.enabled ? -places : places));
    }

    function go(index: int) {
        bar.ringed = true;
        bar.logic.current = Math.max(0, Math.min(tabs.count - 1, index));
        const tab = tabs.itemAt(bar.logic.current);
        if (tab)
            tab.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: Tokens.size.tabRow
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Settings")
    Keys.onLeftPressed: bar.goAcross(-1)
    Keys.onRightPressed: bar.goAcross(1)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            bar.go(event.key === Qt.Key_Home ? 0 : tabs.count - 1);
    }

    Row {
        anchors.centerIn: parent
        spacing: Tokens.space.xs

        Repeater {
            id: tabs

            model: bar.logic.tabs

            Pressable {
                id: tab

                required property int index
                required property var modelData // a SettingsTab
                readonly property bool current: tab.index === bar.logic.current
                readonly property color ink: tab.current ? Tokens.color.accent : Tokens.color.secondary

                objectName: "settingsTab"
                // Of one width, selected or not.
                width: Math.max(Tokens.size.tabWidth, Math.ceil(widest.advanceWidth) + 2 * Tokens.space.sm)
                height: Tokens.size.tabHeight
                role: Accessible.PageTab
                label: tab.modelData.label
                focus: tab.current
                activeFocusOnTab: tab.current
                Accessible.selectable: true
                Accessible.selected: tab.current
                onActivated: bar.logic.current = tab.index
                onTapped: {
                    bar.ringed = false;
                    tab.forceActiveFocus(Qt.MouseFocusReason);
                }

                TextMetrics {
                    id: widest

                    font: Tokens.font.captionSemibold
                    text: tab.modelData.label
                }

                FocusWatch {
                    item: tab
                    onCame: byKeyboard => bar.ringed = byKeyboard
                }

                Rectangle {
                    anchors.fill: parent
                    radius: Tokens.radius.control
                    color: tab.current ? Tokens.color.selection : tab.pressed ? Tokens.color.pressed
                                       : tab.hovered ? Tokens.color.hover : Qt.alpha(Tokens.color.hover, 0)

                    FocusRing {
                        visible: tab.activeFocus && bar.ringed
                        controlRadius: parent.radius
                    }
                }

                Symbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: Tokens.space.sm
                    name: tab.modelData.symbol
                    color: tab.ink
                    size: Tokens.size.tabSymbol
                }

                TextLine {
                    id: caption

                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: Tokens.space.sm
                    readable: false
                    text: tab.modelData.label
                    color: tab.ink
                    font: tab.current ? Tokens.font.captionSemibold : Tokens.font.caption
                }
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Tokens.size.hairline
        color: Tokens.color.divider
    }
}

// The settings: a row of tabs over the form of the one in view.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Window {
    id: window

    required property SettingsLogic logic

    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft // qmllint disable
    LayoutMirroring.childrenInherit: true
    objectName: "settingsWindow"
    title: qsTr("Settings")
    width: Tokens.size.settingsWidth
    // In large text it would be higher than some screens are.
    height: Math.min(Tokens.size.settingsHeight, Screen.desktopAvailableHeight)
    minimumWidth: Tokens.size.settingsWidth
    minimumHeight: Tokens.size.settingsMinimumHeight
    color: Tokens.color.window

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: window.close()
    }

    Shortcut {
        sequences: ["Ctrl+Tab", "Ctrl+PgDown"]
        onActivated: window.logic.step(1)
    }

    Shortcut {
        sequences: ["Ctrl+Shift+Tab", "Ctrl+PgUp"]
        onActivated: window.logic.step(-1)
    }

    SettingsTabBar {
        id: bar

        width: window.width
        focus: true
        logic: window.logic
    }

    Repeater {
        model: window.logic.tabs

        Loader {
            id: page

            required property int index
            required property var modelData // a SettingsTab
            readonly property bool current: page.index === window.logic.current

            function load() {
                if (page.current && page.status === Loader.Null)
                    page.setSource(page.modelData.view, {
                        "logic": page.modelData.logic
                    });
            }

            objectName: "settingsPage"
            y: bar.height
            width: window.width
            height: window.height - y
            visible: page.current
            onCurrentChanged: page.load()
            Component.onCompleted: page.load()
        }
    }
}

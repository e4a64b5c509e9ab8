// The menu bar and the actions behind it, which the toolbar shares.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.MenuBar {
    id: commands

    required property CommandsLogic logic

    readonly property T.Action sync: T.Action {
        text: qsTr("Sync")
        shortcut: "Ctrl+R"
        enabled: commands.logic.canSync
        onTriggered: commands.logic.sync()
    }
    readonly property T.Action cancel: T.Action {
        text: qsTr("Cancel Sync")
        shortcut: "Ctrl+."
        enabled: commands.logic.running
        onTriggered: commands.logic.cancel()
    }
    readonly property T.Action refresh: T.Action {
        text: qsTr("Refresh Library")
        shortcut: "Ctrl+Shift+R"
        onTriggered: commands.logic.refreshLibrary()
    }
    readonly property T.Action revealOutput: T.Action {
        text: qsTr("Reveal Output Folder")
        onTriggered: commands.logic.revealOutput()
    }
    readonly property T.Action review: T.Action {
        text: qsTr("Review Matches")
        shortcut: "Ctrl+Alt+R"
        enabled: commands.logic.canReview
        onTriggered: commands.logic.openReview()
    }
    readonly property T.Action help: T.Action {
        text: qsTr("zelk Help")
        onTriggered: commands.logic.openHelp()
    }
    readonly property T.Action checkForUpdates: T.Action {
        text: qsTr("Check for Updates…")
        onTriggered: commands.logic.checkForUpdates()
    }
    readonly property T.Action about: T.Action {
        text: qsTr("About zelk")
        onTriggered: commands.logic.openAbout()
    }
    readonly property T.Action settings: T.Action {
        text: qsTr("Settings…")
        shortcut: "Ctrl+,"
        enabled: commands.logic.canOpenSettings
        onTriggered: commands.logic.openSettings()
    }
    readonly property T.Action quit: T.Action {
        text: qsTr("Quit")
        shortcut: "Ctrl+Q"
        onTriggered: Qt.quit()
    }

    implicitHeight: Tokens.size.menuBar
    implicitWidth: contentItem.implicitWidth
    leftPadding: Tokens.space.xs
    rightPadding: Tokens.space.xs

    delegate: MenuHead {}

    contentItem: Row {
        Repeater {
            model: commands.contentModel
        }
    }

    background: Rectangle {
        color: Tokens.color.window
    }

    MenuPanel {
        title: qsTr("&File")

        MenuEntry {
            objectName: "menuSync"
            action: commands.sync
            keys: qsTr("Ctrl+R")
        }

        MenuEntry {
            objectName: "menuCancelSync"
            action: commands.cancel
            keys: qsTr("Ctrl+.")
        }

        MenuEntry {
            objectName: "menuRefreshLibrary"
            action: commands.refresh
            keys: qsTr("Ctrl+Shift+R")
        }

        MenuEntry {
            objectName: "menuRevealOutput"
            action: commands.revealOutput
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuReviewMatches"
            action: commands.review
            keys: qsTr("Ctrl+Alt+R")
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuSettings"
            action: commands.settings
            keys: qsTr("Ctrl+,")
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuQuit"
            action: commands.quit
            keys: qsTr("Ctrl+Q")
        }
    }

    MenuPanel {
        title: qsTr("&Help")

        MenuEntry {
            objectName: "menuHelp"
            action: commands.help
        }

        MenuDivider {}

        MenuEntry {
            objectName: "menuAbout"
            action: commands.about
        }

        MenuEntry {
            objectName: "menuCheckForUpdates"
            action: commands.checkForUpdates
        }
    }
}

// The main window: the menu bar above the root view. Closing it ends the application.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Window {
    id: window

    required property CommandsLogic commandsLogic
    required property SidebarLogic sidebarLogic
    required property DetailLogic detailLogic
    required property ReviewLogic reviewLogic
    required property BannerLogic bannerLogic
    required property VPNLogic vpnLogic
    required property OrphansLogic orphansLogic
    required property SetupLogic setupLogic
    required property WindowMemory memory
    required property DesktopMenu desktopMenu
    // What the desktop's menu is made of.
    readonly property Item slimBar: menuBar

    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft // qmllint disable
    LayoutMirroring.childrenInherit: true
    objectName: "mainWindow"
    title: qsTr("zelk")
    width: Tokens.size.windowWidth
    height: Tokens.size.windowHeight
    minimumWidth: Tokens.size.windowMinimumWidth
    minimumHeight: Tokens.size.windowMinimumHeight
    color: Tokens.color.window
    onClosing: Qt.quit()

    ZELKCommands {
        id: menuBar

        width: window.width
        enabled: !window.setupLogic.presented
        height: window.desktopMenu.taken ? 0 : implicitHeight
        visible: height > 0
        logic: window.commandsLogic
    }

    RootView {
        height: window.height - y
        y: menuBar.height
        width: window.width
        commands: menuBar
        sidebar: window.sidebarLogic
        detail: window.detailLogic
        review: window.reviewLogic
        banner: window.bannerLogic
        vpn: window.vpnLogic
        orphans: window.orphansLogic
        setup: window.setupLogic
        memory: window.memory
    }

    Shortcut {
        sequences: ["Ctrl+W"]
        onActivated: window.close()
    }
}

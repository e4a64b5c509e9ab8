// The content of the main window: the sidebar, the detail pane under its toolbar, the message over them and the strip
// under them.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: root

    required property ZELKCommands commands
    required property SidebarLogic sidebar
    required property DetailLogic detail
    required property BannerLogic banner
    required property VPNLogic vpn
    required property OrphansLogic orphans

    property int sidebarWidth: Tokens.size.sidebarIdeal

    SidebarView {
        id: sidebarView

        width: root.sidebarWidth
        height: parent.height - orphansBanner.height
        logic: root.sidebar
    }

    Item {
        id: pane

        anchors.left: sidebarView.right
        anchors.right: parent.right
        height: parent.height - orphansBanner.height

        ZELKToolbar {
            id: toolbar

            width: parent.width
            commands: root.commands
            vpn: root.vpn
        }

        LibraryDetailView {
            anchors.top: toolbar.bottom
            anchors.bottom: parent.bottom
            width: parent.width
            messageRoom: root.banner.shown ? bannerView.height + Tokens.space.lg : 0
            logic: root.detail
        }

        BannerView {
            id: bannerView

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(Tokens.size.bannerMaximum, parent.width - 2 * Tokens.space.lg)
            height: implicitHeight
            y: toolbar.height + (root.banner.shown ? Tokens.space.sm : -height)
            opacity: root.banner.shown ? 1 : 0
            visible: opacity > 0
            logic: root.banner

            Behavior on y {
                NumberAnimation {
                    duration: Tokens.motion.banner
                    easing.type: Easing.OutCubic
                }
            }

            Behavior on opacity {
                NumberAnimation {
                    duration: Tokens.motion.banner
                }
            }
        }
    }

    OrphansBanner {
        id: orphansBanner

        anchors.bottom: parent.bottom
        width: parent.width
        height: root.orphans.shown ? implicitHeight : 0
        visible: height > 0
        logic: root.orphans

        Behavior on height {
            NumberAnimation {
                duration: Tokens.motion.banner
                easing.type: Easing.OutCubic
            }
        }
    }

    MouseArea {
        objectName: "sidebarEdge"
        x: sidebarView.width - width / 2
        width: Tokens.space.sm
        height: sidebarView.height
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            root.sidebarWidth = Math.max(Tokens.size.sidebarMinimum,
                                         Math.min(Tokens.size.sidebarMaximum, x + mouse.x));
        }
    }
}

// The content of the main window: the sidebar, the detail pane under its toolbar, the review beside it, the message over
// them and the strip under them.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: root

    required property ZELKCommands commands
    required property SidebarLogic sidebar
    required property DetailLogic detail
    required property ReviewLogic review
    required property BannerLogic banner
    required property VPNLogic vpn
    required property OrphansLogic orphans
    required property SetupLogic setup
    required property WindowMemory memory

    // Short of room, the columns beside the detail pane give way before it does.
    readonly property real sideRoom: root.width - Tokens.size.detailRoom
    readonly property real shownInspectorWidth: Math.max(Tokens.size.inspectorMinimum,
                                                         Math.min(root.memory.inspectorWidth,
                                                                  root.sideRoom - Tokens.size.sidebarMinimum))
    readonly property real shownSidebarWidth: root.review.presented
                                              ? Math.max(Tokens.size.sidebarMinimum,
                                                         Math.min(root.memory.sidebarWidth,
                                                                  root.sideRoom - root.shownInspectorWidth))
                                              : root.memory.sidebarWidth

    // Nothing behind the sheet is in reach, whichever way one comes.
    enabled: !root.setup.presented

    SidebarView {
        id: sidebarView

        width: root.shownSidebarWidth
        height: parent.height - orphansBanner.height
        logic: root.sidebar
    }

    Item {
        id: pane

        anchors.left: sidebarView.right
        anchors.right: inspector.left
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

    ReviewInspector {
        id: inspector

        x: root.width - (root.review.presented ? root.shownInspectorWidth : 0)
        width: root.shownInspectorWidth
        height: parent.height - orphansBanner.height
        visible: inspector.x < root.width
        logic: root.review

        Behavior on x {
            enabled: root.Window.window?.visible ?? false

            NumberAnimation {
                duration: Tokens.motion.inspector
                easing.type: Easing.OutCubic
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
        objectName: "inspectorEdge"
        x: inspector.x - width / 2
        width: Tokens.space.sm
        height: inspector.height
        enabled: root.review.presented
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            root.memory.inspectorWidth = root.width - x - mouse.x;
        }
    }

    MouseArea {
        objectName: "sidebarEdge"
        x: sidebarView.width - width / 2
        width: Tokens.space.sm
        height: sidebarView.height
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            root.memory.sidebarWidth = x + mouse.x;
        }
    }

    SetupSheet {
        logic: root.setup
    }
}

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

    // How far that place is from the edge that the sidebar stands at.
    function acrossAt(place: real): real {
        return root.LayoutMirroring.enabled ? root.width - place : place;
    }

    // How far the review stands open, 0 to 1: it slides, but follows the window's edge at once.
    property real reviewShare: root.review.presented ? 1 : 0

    Behavior on reviewShare {
        enabled: root.Window.window?.visible ?? false

        NumberAnimation {
            duration: Tokens.motion.inspector
            easing.type: Easing.OutCubic
        }
    }

    SidebarView {
        id: sidebarView

        anchors.left: parent.left
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
            memory: root.memory
        }

        BannerView {
            id: bannerView

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(Tokens.size.bannerMaximum, parent.width - 2 * Tokens.space.lg)
            height: implicitHeight
            y: toolbar.height + (root.banner.shown ? Tokens.space.sm : -height)
            opacity: root.banner.shown ? 1 : 0
            visible: opacity > 0 && !setupSheet.told
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

        anchors.left: parent.right
        anchors.leftMargin: -root.reviewShare * root.shownInspectorWidth
        width: root.shownInspectorWidth
        height: parent.height - orphansBanner.height
        visible: root.reviewShare > 0
        logic: root.review
    }

    OrphansBanner {
        id: orphansBanner

        anchors.bottom: parent.bottom
        width: parent.width
        height: root.orphans.shown ? implicitHeight : 0
        // The list keeps room for a playlist's card and the first of its rows.
        maximumHeight: root.height - toolbar.height - Tokens.size.summaryBar - Tokens.space.md - Tokens.size.groupCard
                       - Tokens.size.columnHead - 4 * Tokens.size.trackRow
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
        anchors.left: inspector.left
        anchors.leftMargin: -width / 2
        width: Tokens.space.sm
        height: inspector.height
        enabled: root.review.presented
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            root.memory.inspectorWidth = root.width - root.acrossAt(x + mouse.x);
        }
    }

    MouseArea {
        objectName: "sidebarEdge"
        anchors.left: sidebarView.right
        anchors.leftMargin: -width / 2
        width: Tokens.space.sm
        height: sidebarView.height
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            root.memory.sidebarWidth = root.acrossAt(x + mouse.x);
        }
    }

    SetupSheet {
        id: setupSheet

        banner: root.banner
        logic: root.setup
        settings: root.commands.settings
    }
}

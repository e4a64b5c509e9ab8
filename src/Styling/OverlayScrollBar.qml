// The scroll bar that lies over its list and takes no room; it shows while scrolling or under the pointer.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.ScrollBar {
    id: bar

    padding: Tokens.space.xs
    minimumSize: 2 * Tokens.space.xl / Math.max(1, bar.height)
    implicitWidth: Tokens.size.scrollBarHover + 2 * Tokens.space.xs
    visible: bar.size < 1

    contentItem: Item {
        implicitWidth: Tokens.size.scrollBarHover

        Rectangle {
            readonly property bool wide: bar.hovered || bar.pressed

            anchors.right: parent.right
            width: wide ? Tokens.size.scrollBarHover : Tokens.size.scrollBar
            height: parent.height
            radius: width / 2
            color: wide ? Tokens.color.scrollBarHover : Tokens.color.scrollBar
            opacity: bar.active ? 1 : 0

            Behavior on opacity {
                NumberAnimation {
                    duration: Tokens.motion.banner
                }
            }
        }
    }
}

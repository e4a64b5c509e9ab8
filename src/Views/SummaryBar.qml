// The strip under the rows: a line of words on each side, over the hairline that parts it from the rows.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

GlassBackground {
    id: bar

    property string leading: ""
    property string trailing: ""
    property font leadingFont: Tokens.font.callout
    property bool busy: false
    readonly property int inset: 2 * Tokens.space.md

    implicitHeight: Tokens.size.summaryBar
    role: GlassBackground.Chrome

    Rectangle {
        width: parent.width
        height: Tokens.size.hairline
        color: Tokens.color.divider
    }

    Row {
        id: left

        x: bar.inset
        y: Tokens.space.sm
        height: Tokens.size.summaryLine
        spacing: Tokens.space.sm

        TextLine {
            height: parent.height
            text: bar.leading
            font: bar.leadingFont
        }

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.busy
        }
    }

    TextLine {
        anchors.right: parent.right
        anchors.rightMargin: bar.inset
        y: left.y
        width: Math.min(implicitWidth, bar.width - left.width - 3 * bar.inset)
        height: left.height
        text: bar.trailing
        color: Tokens.color.secondary
        font: Tokens.font.callout
    }
}

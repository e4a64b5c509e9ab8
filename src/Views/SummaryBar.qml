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
    readonly property int inset: bar.stacked ? Tokens.space.md : 2 * Tokens.space.md

    // The words stand side by side while there is room, else one line below the other.
    readonly property bool stacked: left.implicitWidth + right.implicitWidth + 3 * 2 * Tokens.space.md > bar.width

    implicitHeight: Tokens.size.summaryBar + (bar.stacked ? Tokens.size.summaryLine : 0)
    role: GlassBackground.Chrome

    Rectangle {
        width: parent.width
        height: Tokens.hairline(Screen.devicePixelRatio)
        color: Tokens.color.divider
    }

    Row {
        id: left

        anchors.left: parent.left
        anchors.leftMargin: bar.inset
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
        id: right

        anchors.left: parent.left
        anchors.leftMargin: bar.stacked ? bar.inset : bar.width - width - bar.inset
        y: left.y + (bar.stacked ? Tokens.size.summaryLine : 0)
        width: Math.min(implicitWidth, bar.width - 2 * bar.inset)
        height: left.height
        text: bar.trailing
        color: Tokens.color.secondary
        font: Tokens.font.callout
    }
}

// A row of a form: what it is about at the left, its control or value at the right, a line above unless it is the first.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: row

    property string title: ""
    property string caption: ""
    // A control that is named by the title says it to a screen reader by itself.
    property bool readable: true
    property color ink: Tokens.color.primary
    // Before the words.
    property alias lead: leadRow.data
    default property alias control: controlRow.data
    readonly property real textStart: leadRow.width > 0 ? leadRow.width + 2 * Tokens.space.md : Tokens.space.md
    property bool divided: row.y > 0

    width: parent?.width ?? 0
    implicitHeight: Math.max(row.caption === "" ? Tokens.size.formRow : Tokens.size.formRowOfTwoLines,
                             words.height + 2 * Tokens.space.sm,
                             controlRow.height + 2 * (Tokens.space.xs + Tokens.space.xxs))

    Rectangle {
        anchors.left: words.left
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: row.divided
        color: Tokens.color.divider
    }

    Row {
        id: leadRow

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.md
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: row.textStart
        anchors.right: controlRow.left
        anchors.rightMargin: controlRow.width > 0 ? Tokens.space.md : 0
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.xxs

        Paragraph {
            width: parent.width
            visible: row.title !== ""
            text: row.title
            color: row.ink
            Accessible.ignored: !row.readable || row.title === ""
        }

        Paragraph {
            width: parent.width
            visible: row.caption !== ""
            text: row.caption
            font: Tokens.font.caption
        }
    }

    Row {
        id: controlRow

        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.md
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm
    }
}

// A row of a form without a label: what is in it stands under each other, where the text begins.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: block

    default property alias content: body.data
    property int padding: Tokens.space.sm
    property bool divided: block.y > 0

    width: parent?.width ?? 0
    implicitHeight: Math.max(Tokens.size.formRow, body.implicitHeight + 2 * block.padding)

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.md
        anchors.right: parent.right
        height: Tokens.size.hairline
        visible: block.divided
        color: Tokens.color.divider
    }

    Column {
        id: body

        x: Tokens.space.md
        width: parent.width - 2 * x
        anchors.verticalCenter: parent.verticalCenter
        spacing: Tokens.space.sm
    }
}

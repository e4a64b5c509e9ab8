// A group of a form: its title, a card with its rows, and what is to be said of it underneath.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Column {
    id: section

    required property string title
    property string footer: ""
    default property alias rows: body.data
    // At the right of the title.
    property alias actions: actionRow.data
    // Under the card, where a text isn't enough.
    property alias footnotes: notes.data

    spacing: Tokens.space.sm
    topPadding: Tokens.space.sm
    Accessible.role: Accessible.Grouping
    Accessible.name: section.title

    Item {
        width: parent.width
        height: Math.max(heading.implicitHeight, actionRow.implicitHeight)

        TextLine {
            id: heading

            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.md
            anchors.verticalCenter: parent.verticalCenter
            text: section.title
            color: Tokens.color.secondary
            font: Tokens.font.calloutSemibold
            Accessible.role: Accessible.Heading
        }

        Row {
            id: actionRow

            anchors.right: parent.right
            spacing: Tokens.space.sm
        }
    }

    GlassBackground {
        width: parent.width
        height: body.height
        role: GlassSurface.GroupCard

        Column {
            id: body

            width: parent.width
        }
    }

    Paragraph {
        x: Tokens.space.md
        width: parent.width - 2 * x
        visible: section.footer !== ""
        text: section.footer
        font: Tokens.font.caption
    }

    Column {
        id: notes

        x: Tokens.space.md
        width: parent.width - 2 * x
        spacing: Tokens.space.xs
    }
}

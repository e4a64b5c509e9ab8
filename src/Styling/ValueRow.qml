// A row of a form that says something, and changes nothing.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

FormRow {
    id: row

    required property string value

    TextLine {
        width: Math.min(implicitWidth, row.width / 2)
        elide: Text.ElideMiddle
        text: row.value
        color: Tokens.color.secondary

        HoverHandler {
            id: hover
        }

        Hint {
            visible: hover.hovered && (hover.parent as TextLine).truncated
            text: row.value
        }
    }
}

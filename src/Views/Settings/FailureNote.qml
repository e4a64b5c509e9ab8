// Says why what was asked for did not happen.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Row {
    id: note

    required property string text

    visible: note.text !== ""
    spacing: Tokens.space.xs

    Symbol {
        id: mark

        y: Tokens.space.xxs
        name: "xmark.octagon.fill"
        color: Tokens.color.red
        size: Tokens.size.smallSymbol
    }

    Paragraph {
        objectName: "failureText"
        width: note.width - mark.width - note.spacing
        text: note.text
        color: Tokens.color.red
        font: Tokens.font.caption
    }
}

// One line of text, cut at its end, never taken for markup.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Text {
    id: line

    // False where a surrounding element already says the text to a screen reader.
    property bool readable: true

    textFormat: Text.PlainText
    elide: Text.ElideRight
    maximumLineCount: 1
    // Where the layout begins, whichever way the text itself runs.
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    color: Tokens.color.primary
    font: Tokens.font.body
    Accessible.role: Accessible.StaticText
    Accessible.name: line.text
    Accessible.focusable: false
    Accessible.ignored: !line.readable || line.text === ""
}

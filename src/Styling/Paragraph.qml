// Text that may take several lines, never taken for markup.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Text {
    id: paragraph

    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: paragraph.lineCount > 1 ? Tokens.size.textLineHeight : 1
    color: Tokens.color.secondary
    font: Tokens.font.body
    Accessible.role: Accessible.StaticText
    Accessible.name: paragraph.text
    Accessible.ignored: paragraph.text === ""
}

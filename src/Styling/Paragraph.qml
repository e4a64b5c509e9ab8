// Text that may take several lines, never taken for markup.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Text {
    id: paragraph

    // To space them lays them out anew, and a text without any says each time that their number has changed.
    function spaceLines(): void {
        const wanted = paragraph.lineCount > 1 ? Tokens.size.textLineHeight : 1;
        if (paragraph.lineHeight !== wanted)
            paragraph.lineHeight = wanted;
    }

    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    color: Tokens.color.secondary
    font: Tokens.font.body
    // No binding, and not at once: the lines are counted while they are laid out, which ends with the size of before.
    onLineCountChanged: Qt.callLater(paragraph.spaceLines)
    Accessible.role: Accessible.StaticText
    Accessible.name: paragraph.text
    Accessible.ignored: paragraph.text === ""
}

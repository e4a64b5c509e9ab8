// Text that may take several lines, never taken for markup.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Text {
    id: paragraph

    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    color: Tokens.color.secondary
    font: Tokens.font.body
    // No binding: the lines are counted while they are laid out. A text without any is told to have changed their number
    // whenever it is laid out, so that only what they need counts.
    onLineCountChanged: {
        const wanted = paragraph.lineCount > 1 ? Tokens.size.textLineHeight : 1;
        if (paragraph.lineHeight === wanted)
            return;
        paragraph.lineHeight = wanted;
        // The layout that counted them ends with the size that it had before.
        Qt.callLater(paragraph.forceLayout); // qmllint disable
    }
    Accessible.role: Accessible.StaticText
    Accessible.name: paragraph.text
    Accessible.ignored: paragraph.text === ""
}

// A remark of our own with a word in it that is typed at a terminal.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Text {
    id: note

    required property string before
    required property string code
    required property string after

    textFormat: Text.RichText
    text: note.before + "<code>" + note.code + "</code>" + note.after
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    color: Tokens.color.secondary
    font: Tokens.font.caption
    Accessible.role: Accessible.StaticText
    Accessible.name: note.before + note.code + note.after
}

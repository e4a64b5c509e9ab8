// The note that appears under the pointer.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.ToolTip {
    id: hint

    x: parent ? Math.round((parent.width - hint.implicitWidth) / 2) : 0
    y: parent ? parent.height + Tokens.space.xs : 0
    margins: Tokens.space.sm
    padding: Tokens.space.sm
    implicitWidth: Math.min(Tokens.size.readingWidth, contentItem.implicitWidth + hint.leftPadding + hint.rightPadding)
    implicitHeight: contentItem.implicitHeight + hint.topPadding + hint.bottomPadding
    delay: Tokens.motion.hintDelay
    timeout: Tokens.motion.hintStay
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        text: hint.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: Tokens.color.primary
        font: Tokens.font.caption
    }

    background: Rectangle {
        color: Tokens.color.card
        radius: Tokens.radius.chip
        border.width: Tokens.size.hairline
        border.color: Tokens.color.divider
    }
}

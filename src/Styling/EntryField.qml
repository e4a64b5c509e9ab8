// The field in which a line of text is entered.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.TextField {
    id: field

    // What a screen reader calls it.
    required property string label
    // Behind the text.
    property real trailing: Tokens.space.sm

    implicitHeight: Tokens.size.field
    leftPadding: field.LayoutMirroring.enabled ? field.trailing : Tokens.space.sm
    rightPadding: field.LayoutMirroring.enabled ? Tokens.space.sm : field.trailing
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    font: Tokens.font.body
    color: Tokens.color.primary
    selectionColor: Tokens.color.accentFill
    selectedTextColor: Tokens.color.onAccent
    selectByMouse: true
    Accessible.name: field.label

    background: FieldFrame {
        focused: field.activeFocus
    }

    TextLine {
        anchors.fill: parent
        anchors.leftMargin: Tokens.space.sm
        anchors.rightMargin: field.trailing
        readable: false
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        color: Tokens.color.tertiary
    }
}

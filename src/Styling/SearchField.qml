// The field that filters a list as its text changes; Escape empties it.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.TextField {
    id: field

    implicitHeight: Tokens.size.field
    leftPadding: glass.x + glass.width + Tokens.space.sm
    rightPadding: Tokens.space.sm
    verticalAlignment: TextInput.AlignVCenter
    font: Tokens.font.body
    color: Tokens.color.primary
    selectionColor: Tokens.color.accentFill
    selectedTextColor: Tokens.color.onAccent
    selectByMouse: true
    Accessible.name: field.placeholderText
    Keys.onEscapePressed: field.clear()

    background: FieldFrame {
        focused: field.activeFocus
        color: Tokens.color.searchField
    }

    Symbol {
        id: glass

        x: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: Tokens.size.smallSymbol
    }

    TextLine {
        anchors.left: parent.left
        anchors.leftMargin: field.leftPadding
        anchors.right: parent.right
        anchors.rightMargin: field.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        color: Tokens.color.tertiary
    }
}

// The field that filters a list as its text changes; Escape empties it.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.TextField {
    id: field

    // There is something for Escape to empty.
    readonly property bool takesEscape: field.length > 0
    readonly property bool mirrored: field.LayoutMirroring.enabled
    readonly property real leading: glass.width + 2 * Tokens.space.sm // before the text, for the glass

    implicitHeight: Tokens.size.field
    leftPadding: field.mirrored ? Tokens.space.sm : field.leading
    rightPadding: field.mirrored ? field.leading : Tokens.space.sm
    horizontalAlignment: TextInput.AlignLeft
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

        anchors.left: parent.left
        anchors.leftMargin: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: Tokens.size.smallSymbol
    }

    TextLine {
        anchors.left: parent.left
        anchors.leftMargin: field.leading
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.sm
        anchors.verticalCenter: parent.verticalCenter
        readable: false
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        color: Tokens.color.tertiary
    }
}

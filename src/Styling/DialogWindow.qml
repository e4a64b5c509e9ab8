// A window of its own for one matter: what it is about, what belongs to it, and the buttons that end it. It stays until
// whoever shows it hides it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Window {
    id: dialog

    required property string heading
    property string text: ""
    property string symbol: ""
    // What Return presses, wherever the focus is but on another button. It may be empty while there is only to wait.
    required property string primaryText
    property bool primaryEnabled: true
    // What Escape presses. Without it the dialog has one button, and Escape dismisses it.
    property string secondaryText: ""
    // A third way out, apart from the other two; no key stands for it.
    property string tertiaryText: ""
    // Between the text and the buttons, as wide as they are.
    default property alias content: body.data

    signal accepted
    signal refused
    signal declined
    // Closed without a button.
    signal dismissed

    // Back to where Return presses the primary button, when what is shown has changed under the focus.
    function takeFocus() {
        frame.forceActiveFocus();
    }

    // The bounds go first: a window manager holds a window that becomes lower to those that it knows.
    function fit() {
        dialog.minimumHeight = frame.implicitHeight;
        dialog.maximumHeight = frame.implicitHeight;
        dialog.height = frame.implicitHeight;
    }

    function refuse() {
        if (dialog.secondaryText === "")
            dialog.dismissed();
        else
            dialog.refused();
    }

    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft // qmllint disable
    LayoutMirroring.childrenInherit: true
    title: dialog.heading
    flags: Qt.Dialog
    width: Tokens.size.dialogWidth
    minimumWidth: dialog.width
    maximumWidth: dialog.width
    color: Tokens.color.window
    onClosing: dialog.dismissed()

    Shortcut {
        sequences: ["Escape"]
        onActivated: dialog.refuse()
    }

    Shortcut {
        sequences: ["Ctrl+W"]
        onActivated: dialog.dismissed()
    }

    Item {
        id: frame

        objectName: "dialogFrame"
        width: dialog.width
        implicitHeight: Math.ceil(buttons.y + buttons.height + Tokens.space.xl)
        onImplicitHeightChanged: dialog.fit()
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.heading
        Accessible.description: dialog.text
        Keys.onReturnPressed: primary.press()
        Keys.onEnterPressed: primary.press()

        Symbol {
            id: mark

            objectName: "dialogSymbol"
            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.xl
            y: Tokens.space.xl
            visible: dialog.symbol !== ""
            name: dialog.symbol
            color: Tokens.color.accent
            size: Tokens.size.dialogSymbol
        }

        Column {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: mark.visible ? Tokens.space.xl + mark.width + Tokens.space.lg : Tokens.space.xl
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.xl
            y: Tokens.space.xl
            spacing: Tokens.space.sm

            Paragraph {
                objectName: "dialogHeading"
                width: parent.width
                text: dialog.heading
                color: Tokens.color.primary
                font: Tokens.font.title3
            }

            Paragraph {
                objectName: "dialogText"
                width: parent.width
                visible: dialog.text !== ""
                text: dialog.text
            }
        }

        Column {
            id: body

            anchors.top: words.bottom
            anchors.topMargin: body.implicitHeight > 0 ? Tokens.space.lg : 0
            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.xl
            width: parent.width - 2 * Tokens.space.xl
        }

        PushButton {
            objectName: "dialogTertiary"
            anchors.verticalCenter: buttons.verticalCenter
            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.xl
            visible: dialog.tertiaryText !== ""
            text: dialog.tertiaryText
            onClicked: dialog.declined()
        }

        Row {
            id: buttons

            anchors.top: body.bottom
            anchors.topMargin: Tokens.space.xl
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.xl
            spacing: Tokens.space.sm

            PushButton {
                objectName: "dialogSecondary"
                visible: dialog.secondaryText !== ""
                text: dialog.secondaryText
                onClicked: dialog.refused()
            }

            PushButton {
                id: primary

                objectName: "dialogPrimary"
                visible: dialog.primaryText !== ""
                enabled: dialog.primaryEnabled && dialog.primaryText !== ""
                text: dialog.primaryText
                stroked: false
                fill: Tokens.color.accentFill
                ink: Tokens.color.onAccent
                onClicked: dialog.accepted()
            }
        }
    }
}

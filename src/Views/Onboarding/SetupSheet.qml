// The sheet over the window that holds the setup: what is behind it waits. Escape leaves the setup.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

T.Popup {
    id: sheet

    required property SetupLogic logic
    required property BannerLogic banner
    // The message came while this was up: behind the sheet nobody would see what their press has led to.
    property bool told: false
    // Opens the settings, a window of their own that waits for no setup.
    required property T.Action settings

    anchors.centerIn: T.Overlay.overlay
    width: Tokens.size.sheetWidth
    height: Tokens.size.sheetHeight
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    visible: sheet.logic.presented
    onOpened: frame.forceActiveFocus()

    T.Overlay.modal: Rectangle {
        color: Tokens.color.scrim

        Behavior on opacity {
            NumberAnimation {
                duration: Tokens.motion.sheet
            }
        }
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Tokens.motion.sheet
            easing.type: Easing.OutCubic
        }
    }

    background: GlassBackground {
        role: GlassBackground.Floating

        // What is behind would shine through the words.
        Rectangle {
            anchors.fill: parent
            anchors.margins: Tokens.size.hairline
            radius: Tokens.radius.panel - Tokens.size.hairline
            color: Tokens.color.window
        }
    }

    Item {
        id: frame

        objectName: "setupSheet"
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.logic.title
        Keys.onEscapePressed: sheet.logic.close()
        Keys.onReturnPressed: event => {
            if (!event.isAutoRepeat)
                sheet.logic.primary();
        }
        Keys.onEnterPressed: event => {
            if (!event.isAutoRepeat)
                sheet.logic.primary();
        }

        SetupScaffold {
            anchors.fill: parent
            visible: sheet.logic.present
            logic: sheet.logic
            banner: sheet.banner
            told: sheet.told
            onTurned: {
                sheet.told = false;
                // Each screen begins where Return goes on.
                frame.forceActiveFocus();
            }
        }
    }

    onClosed: sheet.told = false

    Connections {
        function onChanged() {
            sheet.told = sheet.visible && sheet.banner.shown;
        }

        target: sheet.banner
    }

    // What had the keyboard and was shut leaves it to nobody: the sheet's own keys are on the frame.
    Connections {
        target: frame.Window.window

        function onActiveFocusItemChanged() {
            let holder = frame.Window.activeFocusItem;
            while (holder && holder !== frame)
                holder = holder.parent;
            if (sheet.activeFocus && !holder)
                frame.forceActiveFocus();
        }
    }

    // The menu's own are behind the sheet, and quitting is nobody's to keep.
    Shortcut {
        sequences: ["Ctrl+Q"]
        enabled: sheet.visible
        onActivated: Qt.quit()
    }

    Shortcut {
        sequences: [sheet.settings.shortcut]
        enabled: sheet.visible
        onActivated: sheet.settings.trigger()
    }
}

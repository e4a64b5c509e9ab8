// The body of the setup: the screen that is up, which scrolls where it is too high, and comes in with a spring.
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import zelk

Flickable {
    id: area

    required property SetupLogic logic
    // None while there is no setup.
    readonly property int screen: area.logic.present ? area.logic.screen : -1
    property Item shown: null
    readonly property list<Component> screens: [welcome, prepareTools, connectMusic, downloadSources, fineTuning, finish]
    readonly property Item focused: area.Window.activeFocusItem
    // Of the way in, 1 at its end.
    property real arrival: 1

    // Another screen has come up.
    signal turned

    // A screen is made as it comes up, and what it alone holds goes with it.
    function turn() {
        if (area.shown) {
            area.shown.visible = false;
            area.shown.destroy();
        }
        area.shown = area.screen < 0 ? null : area.screens[area.screen].createObject(place);
        area.contentY = 0;
        arriving.restart();
        area.turned();
    }

    function reveal(item: Item) {
        const place = item.mapToItem(area.contentItem, 0, 0);
        if (place.y < area.contentY)
            area.contentY = Math.max(0, place.y - Tokens.space.sm);
        else if (place.y + item.height > area.contentY + area.height)
            area.contentY = place.y + item.height + Tokens.space.sm - area.height;
    }

    objectName: "setupBody"
    clip: true
    T.ScrollBar.vertical: OverlayScrollBar {}
    contentHeight: place.y + place.height + Tokens.space.xl
    boundsBehavior: Flickable.StopAtBounds
    interactive: area.contentHeight > area.height
    onScreenChanged: area.turn()
    Component.onCompleted: area.turn()
    // The keyboard goes to no place that can't be seen.
    onFocusedChanged: {
        for (let item = area.focused; item; item = item.parent) {
            if (item === area.contentItem) {
                area.reveal(area.focused);
                break;
            }
        }
    }

    Item {
        id: place

        x: Tokens.space.xl
        y: Tokens.space.lg
        width: area.width - 2 * x
        height: area.shown?.height ?? 0
        opacity: area.arrival

        transform: Translate {
            x: (area.LayoutMirroring.enabled ? -1 : 1) * (1 - area.arrival) * Tokens.space.xl
        }
    }

    Component {
        id: welcome

        WelcomeScreen {
            width: place.width
        }
    }

    Component {
        id: prepareTools

        PrepareToolsScreen {
            width: place.width
            logic: area.logic.tools
        }
    }

    Component {
        id: connectMusic

        ConnectMusicScreen {
            width: place.width
            logic: area.logic.music
            choices: area.logic.choices
        }
    }

    Component {
        id: downloadSources

        DownloadSourcesScreen {
            width: place.width
            choices: area.logic.choices
        }
    }

    Component {
        id: fineTuning

        FineTuningScreen {
            width: place.width
            choices: area.logic.choices
        }
    }

    Component {
        id: finish

        FinishScreen {
            width: place.width
            choices: area.logic.choices
        }
    }

    NumberAnimation {
        id: arriving

        target: area
        property: "arrival"
        from: 0
        to: 1
        duration: Tokens.motion.spring
        easing.bezierCurve: Tokens.motion.springCurve
    }
}

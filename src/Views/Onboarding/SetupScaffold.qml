// The frame of the setup: the header, the body with the screen that is up, and the footer with the buttons that move
// between screens.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Item {
    id: scaffold

    required property SetupLogic logic
    required property BannerLogic banner
    // Whether the message stands here, over the buttons.
    required property bool told

    // Another screen has come up.
    signal turned

    SetupHeader {
        id: header

        width: parent.width
        visible: scaffold.logic.hasHeader
        height: visible ? implicitHeight : 0
        info: scaffold.logic.header
    }

    ScreenArea {
        anchors.top: header.bottom
        anchors.bottom: scaffold.told ? message.top : footer.top
        width: parent.width
        logic: scaffold.logic
        onTurned: scaffold.turned()
    }

    BannerView {
        id: message

        anchors.bottom: footer.top
        anchors.bottomMargin: Tokens.space.md
        anchors.horizontalCenter: parent.horizontalCenter
        objectName: "setupBanner"
        width: parent.width - 2 * Tokens.space.xl
        height: implicitHeight
        visible: scaffold.told
        logic: scaffold.banner
    }

    Item {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
        height: Tokens.size.setupFooter

        Rectangle {
            width: parent.width
            height: Tokens.size.hairline
            color: Tokens.color.divider
        }

        Row {
            anchors.left: parent.left
            anchors.leftMargin: back.visible ? Tokens.space.lg : Tokens.space.xl
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.space.lg

            PushButton {
                id: back

                objectName: "setupBack"
                implicitHeight: Tokens.size.footerButton
                leftPadding: Tokens.space.lg
                visible: scaffold.logic.showsBack
                enabled: scaffold.logic.backEnabled
                text: qsTr("Back")
                onClicked: scaffold.logic.back()
            }

            StepDots {
                anchors.verticalCenter: parent.verticalCenter
                total: scaffold.logic.stepCount
                current: scaffold.logic.currentIndex
            }
        }

        Row {
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.lg
            anchors.verticalCenter: parent.verticalCenter
            spacing: Tokens.space.sm

            PushButton {
                objectName: "setupSkip"
                implicitHeight: Tokens.size.footerButton
                leftPadding: Tokens.space.lg
                visible: scaffold.logic.showsSkip
                text: qsTr("Skip")
                onClicked: scaffold.logic.skip()
            }

            PushButton {
                objectName: "setupPrimary"
                implicitHeight: Tokens.size.footerButton
                leftPadding: Tokens.space.lg
                prominent: true
                enabled: scaffold.logic.primaryEnabled
                text: scaffold.logic.primaryText
                onClicked: scaffold.logic.primary()
            }
        }
    }

    SourceWarning {
        logic: scaffold.logic
    }
}

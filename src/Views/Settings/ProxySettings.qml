// The tunnel's subscription: entering, replacing, testing and forgetting it.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property ProxyLogic logic

    objectName: "proxySettings"

    FormSection {
        width: parent.width
        title: qsTr("Vantrix VPN")
        footer: page.logic.footer

        FormBlock {
            SecretField {
                id: field

                objectName: "subscription"
                width: parent.width
                placeholderText: qsTr("Subscription URL")
                text: page.logic.subscription
                onTextChanged: page.logic.subscription = field.text
                onAccepted: page.logic.saveSubscription()
            }
        }

        FormBlock {
            Item {
                width: parent.width
                height: action.height

                Row {
                    anchors.left: parent.left
                    spacing: Tokens.space.md

                    PushButton {
                        id: action

                        objectName: "proxyAction"
                        enabled: page.logic.canAct
                        text: page.logic.actionText
                        ink: Qt.alpha(Tokens.color.primary, page.logic.showsTesting ? 0 : 1)
                        Accessible.description: page.logic.showsTesting ? qsTr("Testing connection…") : ""
                        onClicked: page.logic.act()

                        Spinner {
                            objectName: "testing"
                            anchors.centerIn: parent
                            visible: page.logic.showsTesting
                        }
                    }

                    StatusPill {
                        objectName: "testResult"
                        anchors.verticalCenter: parent.verticalCenter
                        visible: page.logic.outcomeText !== ""
                        text: page.logic.outcomeText
                        symbol: page.logic.outcomeSymbol
                        ink: Tokens.color.inks[page.logic.outcomeInk]
                    }
                }

                PushButton {
                    id: forget

                    readonly property bool offered: page.logic.configured

                    objectName: "forgetProxy"
                    anchors.right: parent.right
                    visible: forget.offered
                    text: qsTr("Forget")
                    ink: Tokens.color.red
                    onClicked: page.logic.forget()
                    // Whoever works by keyboard goes on where a new one is entered.
                    onOfferedChanged: {
                        if (!forget.offered && forget.focus)
                            field.forceActiveFocus(Qt.TabFocusReason);
                    }
                }
            }

            FailureNote {
                objectName: "proxyFailure"
                width: parent.width
                text: page.logic.lastError
            }
        }

        FormBlock {
            visible: page.logic.detail !== ""

            Paragraph {
                objectName: "testDetail"
                width: parent.width
                text: page.logic.detail
                font: Tokens.font.caption
            }
        }
    }
}

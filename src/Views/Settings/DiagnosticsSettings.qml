// What the engine's doctor has found, with a way to mend what can be mended.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SettingsPage {
    id: page

    required property DiagnosticsLogic logic

    FormSection {
        width: parent.width
        title: qsTr("Checks")
        footer: page.logic.lastError

        actions: PushButton {
            objectName: "runAll"
            small: true
            enabled: !page.logic.running
            text: qsTr("Run All")
            onClicked: page.logic.runAll()
        }

        FormRow {
            objectName: "noChecks"
            visible: page.logic.present && page.logic.checks.length === 0
            title: qsTr("Run the checks to see your setup status.")
            ink: Tokens.color.secondary
        }

        Repeater {
            model: page.logic.checks.length

            FormRow {
                id: check

                required property int index
                // A CheckFace; none in the moment in which the findings become fewer.
                readonly property var face: page.logic.checks[index] ?? null

                objectName: "check"
                title: check.face?.title ?? ""
                caption: check.face?.detail ?? ""

                lead: Symbol {
                    objectName: "checkMark"
                    name: check.face?.symbol ?? ""
                    color: Tokens.color.inks[check.face?.ink ?? 0]
                    size: Tokens.size.bannerSymbol
                    Accessible.role: Accessible.Graphic
                    Accessible.name: check.face?.status ?? ""
                }

                PushButton {
                    objectName: "fix"
                    visible: check.face?.fixable ?? false
                    enabled: !page.logic.running
                    text: qsTr("Fix")
                    Accessible.description: check.title
                    onClicked: page.logic.fix(check.index)
                }
            }
        }
    }
}

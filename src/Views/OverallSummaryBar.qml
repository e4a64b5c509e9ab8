// How the whole run stands.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SummaryBar {
    id: bar

    required property DetailLogic logic

    objectName: "overallSummaryBar"
    leading: bar.logic.phaseText
    leadingFont: Tokens.font.calloutSemibold
    trailing: bar.logic.runSummary

    ProgressLine {
        objectName: "overallProgress"
        anchors.left: parent.left
        anchors.leftMargin: bar.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Tokens.space.sm
        width: parent.width - 2 * bar.inset
        animated: true
        label: qsTr("Overall sync progress")
        value: bar.logic.overallFraction
        valueText: bar.logic.overallPercentText
    }
}

// What the selection holds, and how much of it is on disk.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

SummaryBar {
    id: bar

    required property DetailLogic logic

    objectName: "previewSummaryBar"
    leading: bar.logic.previewCounts
    trailing: bar.logic.previewSummary
    busy: bar.logic.previewLoading
}

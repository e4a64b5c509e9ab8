// All that is known of a file's quality, a badge a fact, in order.
pragma ComponentBehavior: Bound

import QtQuick
import zelk

Row {
    id: row

    required property list<string> badges

    spacing: Tokens.space.xs

    Repeater {
        model: row.badges

        QualityBadge {
            required property string modelData

            text: modelData
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The week's four figures side by side, in cards of equal width.
RowLayout {
    id: root

    objectName: "reviewMetrics"
    spacing: Theme.spacing

    Repeater {
        model: ReviewScreen.metrics
        delegate: ReviewMetricCard {
            required property var modelData

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.fillHeight: true
            title: modelData.title
            value: modelData.value
            detail: modelData.detail
        }
    }
}

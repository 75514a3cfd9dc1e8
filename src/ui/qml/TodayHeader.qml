import QtQuick
import QtQuick.Layouts
import Brindlet

// The day's name and how much it holds.
RowLayout {
    id: root

    spacing: Theme.spacing

    ColumnLayout {
        spacing: 2
        Text {
            text: "TODAY"
            font.pixelSize: Theme.captionSize
            font.bold: true
            font.letterSpacing: 1.2
            color: Theme.secondary
        }
        Text {
            objectName: "dayTitle"
            text: Dashboard.dayTitle
            font.pixelSize: Theme.titleSize
            font.bold: true
            color: Theme.primary
        }
    }

    Item { Layout.fillWidth: true }

    Text {
        objectName: "workload"
        Layout.alignment: Qt.AlignBottom
        Layout.bottomMargin: 6
        text: Dashboard.workloadText
        font.pixelSize: Theme.bodySize
        color: Theme.secondary
    }
}

import QtQuick
import Brindlet

// The day's name and how much it holds.
Item {
    id: root

    implicitHeight: names.implicitHeight

    Column {
        id: names
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
            // Until the plan is read there is no title, but its line is kept, so that nothing
            // below moves when it comes.
            text: Dashboard.dayTitle.length > 0 ? Dashboard.dayTitle : " "
            font.pixelSize: Theme.titleSize
            font.bold: true
            color: Theme.primary
        }
    }

    Text {
        objectName: "workload"
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6
        text: Dashboard.workloadText
        font.pixelSize: Theme.bodySize
        color: Theme.secondary
    }
}

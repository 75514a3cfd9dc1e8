import QtQuick
import QtQuick.Layouts
import Brindlet

// The day's open tasks in queue order, reorderable by dragging, and under them the completed
// ones in a group that starts closed.
ColumnLayout {
    id: root

    property bool completedOpen: false

    objectName: "taskQueue"
    spacing: 8

    Text {
        text: "Your queue"
        font.pixelSize: Theme.headlineSize
        font.bold: true
        color: Theme.primary
        Layout.bottomMargin: 2
    }

    Repeater {
        model: Dashboard.queue
        delegate: TaskRow {
            Layout.fillWidth: true
            reorderable: true
        }
    }

    Rectangle {
        id: completedHeader

        objectName: "completedHeader"
        visible: Dashboard.completed.count > 0
        Layout.fillWidth: true
        Layout.topMargin: 6
        implicitHeight: 34
        radius: Theme.controlRadius
        color: hover.hovered ? Theme.tint(Theme.primary, 0.05) : "transparent"
        Accessible.role: Accessible.Button
        Accessible.name: headerText.text

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 8
            spacing: 8
            AppIcon {
                symbol: "chevron.right"
                size: 12
                rotation: root.completedOpen ? 90 : 0
            }
            Text {
                id: headerText
                text: "Completed (" + Dashboard.completed.count + ")"
                Layout.fillWidth: true
                font.pixelSize: Theme.bodySize
                font.weight: Font.DemiBold
                color: Theme.secondary
            }
        }
        HoverHandler { id: hover }
        TapHandler { onTapped: root.completedOpen = !root.completedOpen }
    }

    Repeater {
        model: root.completedOpen ? Dashboard.completed : null
        delegate: TaskRow {
            Layout.fillWidth: true
            reorderable: false
        }
    }
}

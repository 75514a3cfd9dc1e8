import QtQuick
import Brindlet

// The day's open tasks in queue order, reorderable by dragging, and under them the completed
// ones in a group that starts closed.
Column {
    id: root

    property bool completedOpen: false

    objectName: "taskQueue"
    spacing: 8

    Text {
        text: "Your queue"
        font.pixelSize: Theme.headlineSize
        font.bold: true
        color: Theme.primary
        bottomPadding: 2
    }

    Repeater {
        model: Dashboard.queue
        delegate: TaskRow {
            width: parent.width
            reorderable: true
        }
    }

    // The completed group's header, set a little apart from the queue above it.
    Item {
        width: root.width
        height: completedHeader.height + 6
        visible: Dashboard.completed.count > 0

        Rectangle {
            id: completedHeader

            objectName: "completedHeader"
            y: 6
            width: parent.width
            height: 34
            radius: Theme.controlRadius
            color: hover.hovered ? Theme.tint(Theme.primary, 0.05) : "transparent"
            Accessible.role: Accessible.Button
            Accessible.name: headerText.text

            Row {
                anchors.left: parent.left
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8
                AppIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "chevron.right"
                    size: 12
                    rotation: root.completedOpen ? 90 : 0
                }
                Text {
                    id: headerText
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Completed (" + Dashboard.completed.count + ")"
                    font.pixelSize: Theme.bodySize
                    font.weight: Font.DemiBold
                    color: Theme.secondary
                }
            }
            HoverHandler { id: hover }
            TapHandler { onTapped: root.completedOpen = !root.completedOpen }
        }
    }

    Repeater {
        model: root.completedOpen ? Dashboard.completed : null
        delegate: TaskRow {
            width: parent.width
            reorderable: false
        }
    }
}

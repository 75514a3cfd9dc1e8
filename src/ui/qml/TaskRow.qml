import QtQuick
import Brindlet

// One task of the queue. A reorderable row drags as a whole, carrying the task's id as plain
// text, and takes drops of other rows.
Item {
    id: root

    required property string taskId
    required property string title
    required property bool completed
    required property string priority
    required property string estimateText
    required property string focusedText
    required property bool hasReminder
    property bool reorderable: false
    /// What a drag of this row carries: the task's id as plain text.
    readonly property string dragText: taskId

    objectName: "taskRow." + title
    implicitHeight: 58
    z: dragHandler.active ? 10 : 0

    Rectangle {
        id: card

        width: root.width
        height: root.height
        radius: Theme.rowRadius
        color: dropArea.containsDrag ? Theme.tint(Theme.accent, 0.12)
                                     : (dragHandler.active ? Theme.surface : Theme.rowFill)
        border.width: dragHandler.active ? 1 : 0
        border.color: Theme.cardOutline

        Drag.active: dragHandler.active
        Drag.source: root
        Drag.hotSpot.x: width / 2
        Drag.hotSpot.y: height / 2
        Drag.keys: ["text/plain"]
        Drag.mimeData: ({ "text/plain": root.dragText })
        Drag.supportedActions: Qt.MoveAction

        DragHandler {
            id: dragHandler
            enabled: root.reorderable
            xAxis.enabled: false
            onActiveChanged: {
                if (!active) {
                    card.Drag.drop()
                    card.y = 0
                }
            }
        }

        Row {
            id: lead
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            AppIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.reorderable
                symbol: "line.3.horizontal"
                color: Theme.faint
                Accessible.role: Accessible.Graphic
                Accessible.name: "Drag to reprioritize"
            }

            IconButton {
                objectName: "complete." + root.title
                anchors.verticalCenter: parent.verticalCenter
                symbol: root.completed ? "checkmark.circle.fill" : "circle"
                tint: root.completed ? Theme.green : Theme.secondary
                enabled: !root.completed
                Accessible.name: "Mark " + root.title + " done"
                onClicked: Dashboard.completeTask(root.taskId)
            }
        }

        Column {
            anchors.left: lead.right
            anchors.leftMargin: 10
            anchors.right: edit.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Text {
                objectName: "rowTitle"
                width: parent.width
                text: root.title
                elide: Text.ElideRight
                font.pixelSize: Theme.bodySize
                font.strikeout: root.completed
                color: root.completed ? Theme.secondary : Theme.primary
            }
            Row {
                spacing: 8
                PriorityBadge {
                    anchors.verticalCenter: parent.verticalCenter
                    priority: root.priority
                }
                Text {
                    objectName: "rowEstimate"
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.estimateText.length > 0
                    text: root.estimateText
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
                // Only a completed row says how long it was worked on.
                Loader {
                    anchors.verticalCenter: parent.verticalCenter
                    active: root.completed
                    sourceComponent: Row {
                        spacing: 4
                        AppIcon {
                            anchors.verticalCenter: parent.verticalCenter
                            symbol: "stopwatch.fill"
                            size: 12
                        }
                        Text {
                            objectName: "rowFocused"
                            text: root.focusedText
                            font.pixelSize: Theme.smallSize
                            color: Theme.secondary
                        }
                    }
                }
                AppIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.hasReminder
                    symbol: "bell.fill"
                    size: 12
                }
            }
        }

        IconButton {
            id: edit
            objectName: "edit." + root.title
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            symbol: "ellipsis"
            Accessible.name: "Edit " + root.title
            onClicked: Dashboard.editTask(root.taskId)
        }
    }

    DropArea {
        id: dropArea
        anchors.fill: parent
        enabled: root.reorderable
        keys: ["text/plain"]
        onDropped: (drop) => {
            // A drag from another application brings its text with it; a drag within the window
            // carries no data, so its plain text is read from the row it started on.
            const fromRow = drop.source && drop.source.dragText !== undefined
            const text = drop.hasText ? drop.text : (fromRow ? String(drop.source.dragText) : "")
            if (Dashboard.dropOnRow(text, root.taskId)) {
                drop.acceptProposedAction()
            } else {
                drop.accepted = false
            }
        }
    }
}

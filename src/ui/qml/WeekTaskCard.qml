import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// One task on the week board. The card drags as a whole, carrying the task's id as plain text;
// its "Move" menu sends it to any day of the week or off the plan; a click elsewhere on it opens
// the editor.
Item {
    id: root

    required property string taskId
    required property string title
    required property bool completed
    required property string priority
    required property string estimateText
    /// What a drag of this card carries: the task's id as plain text.
    readonly property string dragText: taskId
    readonly property bool dragging: dragHandler.active
    /// Where the pointer dragging the card is, in the window.
    readonly property point pointer: dragHandler.centroid.scenePosition

    /// Moves the dragged card sideways by `distance`, to follow a scroll of the board under it.
    function carry(distance: real) {
        card.x += distance
    }

    objectName: "weekTask." + title
    implicitHeight: card.implicitHeight
    z: dragging ? 10 : 0

    // A faint shadow under the card, a little lower than the card itself.
    Rectangle {
        x: card.x
        y: card.y + (root.dragging ? 4 : 1)
        width: card.width
        height: card.height
        radius: card.radius
        color: Theme.tint(Theme.primary, root.dragging ? 0.12 : 0.06)
    }

    Rectangle {
        id: card

        objectName: "weekTaskCard"
        width: root.width
        height: root.height
        implicitHeight: body.implicitHeight + 2 * body.anchors.margins
        radius: Theme.rowRadius
        // A done task stays in its day's column, quieter than the work still ahead.
        color: {
            if (hover.hovered && !root.dragging) return Qt.tint(Theme.surface, Theme.tint(Theme.accent, 0.04))
            return root.completed ? Theme.tint(Theme.surface, 0.6) : Theme.surface
        }
        border.width: 1
        border.color: Theme.cardOutline
        Accessible.role: Accessible.Button
        Accessible.name: root.title
        Accessible.description: "Edit"
        Accessible.onPressAction: Dashboard.editTask(root.taskId)

        Drag.active: dragHandler.active
        Drag.source: root
        Drag.hotSpot.x: width / 2
        Drag.hotSpot.y: height / 2
        Drag.keys: ["text/plain"]
        Drag.mimeData: ({ "text/plain": root.dragText })
        Drag.supportedActions: Qt.MoveAction

        DragHandler {
            id: dragHandler
            onActiveChanged: {
                if (!active) {
                    card.Drag.drop()
                    card.x = 0
                    card.y = 0
                }
            }
        }
        HoverHandler { id: hover }
        TapHandler { onTapped: Dashboard.editTask(root.taskId) }

        ColumnLayout {
            id: body

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: 10
            spacing: 6
            opacity: root.completed ? 0.7 : 1

            Text {
                objectName: "weekTaskTitle"
                Layout.fillWidth: true
                text: root.title
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                font.pixelSize: Theme.bodySize
                font.weight: Font.DemiBold
                font.strikeout: root.completed
                color: root.completed ? Theme.secondary : Theme.primary
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: 6
                PriorityBadge { priority: root.priority }
                Item { Layout.fillWidth: true }
                Text {
                    objectName: "weekTaskEstimate"
                    visible: root.estimateText.length > 0
                    text: root.estimateText
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }

            AppButton {
                id: moveButton

                objectName: "move." + root.title
                Layout.leftMargin: -4
                borderless: true
                text: "Move"
                tint: Theme.accent
                font.pixelSize: Theme.smallSize
                onClicked: moveMenu.popup(moveButton, 0, moveButton.height)

                WeekMoveMenu {
                    id: moveMenu
                    taskId: root.taskId
                }
            }
        }
    }
}

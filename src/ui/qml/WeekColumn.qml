import QtQuick
import QtQuick.Layouts
import Brindlet

// One column of the board: a day of the week with its work against the daily capacity, or the
// tasks that have no day. The whole column takes dropped tasks.
Rectangle {
    id: root

    required property int column
    readonly property var info: WeekScreen.columns[column]
    readonly property bool isDay: info.isDay
    readonly property bool overloaded: info.overloaded
    /// One of this column's cards is being dragged; the column then stands above the others so
    /// that the card is drawn over them.
    property bool holdsDrag: false

    /// A card of this column started or ended a drag.
    signal cardDragged(WeekTaskCard card, bool dragging)

    objectName: "weekColumn." + info.title
    implicitHeight: body.implicitHeight + 2 * body.anchors.margins + 56
    z: holdsDrag ? 1 : 0
    radius: Theme.cardRadius
    color: {
        if (dropArea.containsDrag) return Theme.tint(Theme.accent, 0.1)
        if (overloaded) return Theme.tint(Theme.orange, 0.08)
        return Theme.tint(Theme.primary, isDay ? 0.035 : 0.025)
    }
    border.width: dropArea.containsDrag ? 1 : 0
    border.color: Theme.tint(Theme.accent, 0.45)

    ColumnLayout {
        id: body

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 12
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: 4
            spacing: 6

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Text {
                    objectName: "weekColumnTitle"
                    Layout.fillWidth: true
                    text: root.info.title
                    elide: Text.ElideRight
                    font.pixelSize: Theme.bodySize + 1
                    font.weight: Font.DemiBold
                    color: Theme.primary
                }
                Text {
                    objectName: "weekColumnSubtitle"
                    Layout.fillWidth: true
                    text: root.info.subtitle
                    elide: Text.ElideRight
                    font.pixelSize: Theme.smallSize
                    font.weight: root.overloaded ? Font.DemiBold : Font.Normal
                    color: root.overloaded ? Theme.orange : Theme.secondary
                }
            }

            IconButton {
                objectName: root.info.openName
                visible: root.isDay
                Layout.alignment: Qt.AlignTop
                symbol: "arrow.right"
                Accessible.name: root.info.openName
                onClicked: WeekScreen.openDay(root.column)
            }
        }

        Repeater {
            model: WeekScreen.taskList(root.column)
            delegate: WeekTaskCard {
                id: taskCard

                Layout.fillWidth: true
                onDraggingChanged: {
                    root.holdsDrag = dragging
                    root.cardDragged(taskCard, dragging)
                }
            }
        }
    }

    DropArea {
        id: dropArea

        anchors.fill: parent
        keys: ["text/plain"]
        onDropped: (drop) => {
            // A drag from another application brings its text with it; a drag within the window
            // carries no data, so its plain text is read from the item it started on.
            const fromItem = drop.source && drop.source.dragText !== undefined
            const text = drop.hasText ? drop.text : (fromItem ? String(drop.source.dragText) : "")
            if (WeekScreen.dropOnColumn(text, root.column)) {
                drop.acceptProposedAction()
            } else {
                drop.accepted = false
            }
        }
    }
}

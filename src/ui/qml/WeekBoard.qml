import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The columns of the week side by side, Monday first, then the unscheduled column; the row
// scrolls sideways when the window is narrower than the board.
Flickable {
    id: root

    /// The card being dragged, if any: near either edge of the board it scrolls the board.
    property WeekTaskCard draggedCard: null

    objectName: "weekBoard"
    implicitHeight: columns.implicitHeight + bar.height + 8
    contentWidth: columns.implicitWidth
    contentHeight: columns.implicitHeight
    flickableDirection: Flickable.HorizontalFlick
    boundsBehavior: Flickable.StopAtBounds
    // Only the scroll bar and the wheel scroll the board: a press on a card starts its drag.
    interactive: false
    clip: true

    ScrollBar.horizontal: ScrollBar {
        id: bar
        policy: root.contentWidth > root.width ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    }

    RowLayout {
        id: columns

        spacing: Theme.spacing

        Repeater {
            model: WeekScreen.columnCount
            delegate: WeekColumn {
                required property int index

                column: index
                onCardDragged: (card, dragging) => {
                    if (dragging) root.draggedCard = card
                    else if (root.draggedCard === card) root.draggedCard = null
                }
                Layout.preferredWidth: 210
                Layout.minimumHeight: 470
                Layout.fillHeight: true
            }
        }
    }

    // Holding a dragged card near an edge scrolls the board towards the columns out of sight, so
    // that every column can be reached by dragging. The card is carried along with the scroll so
    // that it stays under the pointer.
    Timer {
        interval: 16
        repeat: true
        running: root.draggedCard !== null
        onTriggered: {
            const card = root.draggedCard
            const pointer = root.mapFromItem(null, card.pointer.x, card.pointer.y)
            const edge = 64
            let step = 0
            if (pointer.x < edge) step = -Math.ceil((edge - pointer.x) / 3)
            else if (pointer.x > root.width - edge) step = Math.ceil((pointer.x - root.width + edge) / 3)
            const widest = Math.max(0, root.contentWidth - root.width)
            const next = Math.max(0, Math.min(widest, root.contentX + step))
            const moved = next - root.contentX
            if (moved === 0) return
            root.contentX = next
            card.carry(moved)
        }
    }

    // A sideways wheel or trackpad scrolls the board; the upright wheel is left to the page.
    WheelHandler {
        orientation: Qt.Horizontal
        onWheel: (event) => {
            const delta = event.pixelDelta.x !== 0 ? event.pixelDelta.x : event.angleDelta.x / 2
            const widest = Math.max(0, root.contentWidth - root.width)
            root.contentX = Math.max(0, Math.min(widest, root.contentX - delta))
        }
    }
}

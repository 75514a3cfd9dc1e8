import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The columns of the week side by side, Monday first, then the unscheduled column; the row
// scrolls sideways when the window is narrower than the board.
Flickable {
    id: root

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
                Layout.preferredWidth: 210
                Layout.minimumHeight: 470
                Layout.fillHeight: true
            }
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

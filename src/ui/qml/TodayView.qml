import QtQuick
import Brindlet

// The day on show: its header, its week, the task to work on now, quick add and the queue. The
// first screen, so it is built from plain items and positioners alone.
ScreenFrame {
    id: root

    objectName: "todayView"
    contentHeight: column.implicitHeight

    Column {
        id: column
        x: root.contentX
        y: 30
        width: root.contentWidth
        spacing: 22

        TodayHeader { width: parent.width }
        WeekStrip { width: parent.width }
        NextTaskCard { width: parent.width }
        QuickAdd { width: parent.width }
        TaskQueue { width: parent.width }

        Loader {
            width: parent.width
            active: Dashboard.reminderWarning.length > 0
            visible: active
            sourceComponent: Item {
                objectName: "reminderWarning"
                implicitHeight: Math.max(warningIcon.height, warningText.implicitHeight)
                AppIcon {
                    id: warningIcon
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "bell.slash"
                    color: Theme.orange
                }
                Text {
                    id: warningText
                    anchors.left: warningIcon.right
                    anchors.leftMargin: 8
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: Dashboard.reminderWarning
                    wrapMode: Text.Wrap
                    color: Theme.orange
                    font.pixelSize: Theme.smallSize
                }
            }
        }
    }
}

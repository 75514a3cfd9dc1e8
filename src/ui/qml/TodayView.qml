import QtQuick
import QtQuick.Layouts
import Brindlet

// The day on show: its header, its week, the task to work on now, quick add and the queue.
ScreenPage {
    objectName: "todayView"

    TodayHeader { Layout.fillWidth: true }
    WeekStrip { Layout.fillWidth: true }
    NextTaskCard { Layout.fillWidth: true }
    QuickAdd { Layout.fillWidth: true }
    TaskQueue { Layout.fillWidth: true }

    Loader {
        Layout.fillWidth: true
        active: Dashboard.reminderWarning.length > 0
        visible: active
        sourceComponent: RowLayout {
            objectName: "reminderWarning"
            spacing: 8
            AppIcon { symbol: "bell.slash"; color: Theme.orange }
            Text {
                Layout.fillWidth: true
                text: Dashboard.reminderWarning
                wrapMode: Text.Wrap
                color: Theme.orange
                font.pixelSize: Theme.smallSize
            }
        }
    }
}

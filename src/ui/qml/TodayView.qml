import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The day on show: its header, its week, the task to work on now, quick add and the queue.
Item {
    id: root

    objectName: "todayView"

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.background }
            GradientStop { position: 1; color: Qt.tint(Theme.background, Theme.tint(Theme.accent, 0.05)) }
        }
    }

    Flickable {
        id: scroller
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 64
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        ColumnLayout {
            id: column
            x: Math.max(28, (scroller.width - width) / 2)
            y: 30
            width: Math.min(Theme.contentMaxWidth, scroller.width - 56)
            spacing: 22

            TodayHeader { Layout.fillWidth: true }
            WeekStrip { Layout.fillWidth: true }
            NextTaskCard { Layout.fillWidth: true }
            QuickAdd { Layout.fillWidth: true }
            TaskQueue { Layout.fillWidth: true }

            RowLayout {
                objectName: "reminderWarning"
                visible: Dashboard.reminderWarning.length > 0
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
}

import QtQuick
import Brindlet

// The one task to work on now, with the focus controls that fit its state; or, with nothing to
// do, the cleared-day panel.
FocusCard {
    id: root

    readonly property var controls: ({
        active: [
            { text: "Pause", symbol: "pause.fill", action: () => Dashboard.pauseActiveTask() },
            { text: "Done", symbol: "checkmark", prominent: true,
              action: () => Dashboard.completeCardTask() },
            { text: "Skip", action: () => Dashboard.skipActiveTask() }
        ],
        paused: [
            { text: "Resume Focus", symbol: "play.fill", prominent: true,
              action: () => Dashboard.resumeCardTask() }
        ],
        other: [
            { text: "Start Focus", symbol: "play.fill", prominent: true,
              action: () => Dashboard.startCardTask() },
            { text: "Edit", action: () => Dashboard.editTask("") }
        ]
    })

    objectName: "nextTaskCard"

    Column {
        width: parent.width
        spacing: 10
        visible: Dashboard.hasCardTask

        Item {
            width: parent.width
            implicitHeight: Math.max(label.implicitHeight, badge.implicitHeight)

            Row {
                id: label
                anchors.verticalCenter: parent.verticalCenter
                spacing: 7
                AppIcon {
                    objectName: "cardIcon"
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: Dashboard.cardSymbol
                    color: Theme.accent
                    size: 14
                }
                Text {
                    objectName: "cardLabel"
                    anchors.verticalCenter: parent.verticalCenter
                    text: Dashboard.cardLabel
                    font.pixelSize: Theme.captionSize
                    font.bold: true
                    font.letterSpacing: 1.1
                    color: Theme.accent
                }
            }
            PriorityBadge {
                id: badge
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                priority: Dashboard.cardPriority
            }
        }

        Text {
            objectName: "cardTitle"
            width: parent.width
            text: Dashboard.cardTitle
            wrapMode: Text.Wrap
            font.pixelSize: Theme.displaySize
            font.bold: true
            color: Theme.primary
        }

        Row {
            spacing: 18
            Row {
                spacing: 6
                AppIcon { anchors.verticalCenter: parent.verticalCenter; symbol: "clock"; size: 14 }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Dashboard.cardEstimateText
                    font.pixelSize: Theme.bodySize
                    color: Theme.secondary
                }
            }
            Row {
                visible: Dashboard.cardElapsedText.length > 0
                spacing: 6
                AppIcon { anchors.verticalCenter: parent.verticalCenter; symbol: "stopwatch"; size: 14 }
                Text {
                    objectName: "cardElapsed"
                    anchors.verticalCenter: parent.verticalCenter
                    text: Dashboard.cardElapsedText
                    font.pixelSize: Theme.bodySize
                    color: Theme.secondary
                }
            }
        }

        Row {
            topPadding: 6
            spacing: 10

            // Only the controls of the task's state are made; a change of state makes them anew.
            Repeater {
                model: root.controls[Dashboard.cardStatus] ?? []
                delegate: AppButton {
                    required property var modelData
                    large: true
                    prominent: modelData.prominent ?? false
                    text: modelData.text
                    symbol: modelData.symbol ?? ""
                    onClicked: modelData.action()
                }
            }
        }
    }

    Loader {
        width: parent.width
        // A plan not yet read is not known to be empty.
        active: Dashboard.planRead && !Dashboard.hasCardTask
        visible: active
        sourceComponent: Column {
            objectName: "dayCleared"
            topPadding: 10
            bottomPadding: 10
            spacing: 8

            AppIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                symbol: "checkmark.circle.fill"
                size: 34
                color: Theme.green
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "Day cleared"
                font.pixelSize: Theme.headlineSize
                font.bold: true
                color: Theme.primary
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "Add a task or choose another day."
                font.pixelSize: Theme.bodySize
                color: Theme.secondary
            }
        }
    }
}

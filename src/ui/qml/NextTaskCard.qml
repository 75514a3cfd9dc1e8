import QtQuick
import QtQuick.Layouts
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

    ColumnLayout {
        width: parent.width
        spacing: 10
        visible: Dashboard.hasCardTask

        RowLayout {
            Layout.fillWidth: true
            spacing: 7
            AppIcon {
                objectName: "cardIcon"
                symbol: Dashboard.cardSymbol
                color: Theme.accent
                size: 14
            }
            Text {
                objectName: "cardLabel"
                text: Dashboard.cardLabel
                font.pixelSize: Theme.captionSize
                font.bold: true
                font.letterSpacing: 1.1
                color: Theme.accent
            }
            Item { Layout.fillWidth: true }
            PriorityBadge { priority: Dashboard.cardPriority }
        }

        Text {
            objectName: "cardTitle"
            Layout.fillWidth: true
            text: Dashboard.cardTitle
            wrapMode: Text.Wrap
            font.pixelSize: Theme.displaySize
            font.bold: true
            color: Theme.primary
        }

        RowLayout {
            spacing: 18
            RowLayout {
                spacing: 6
                AppIcon { symbol: "clock"; size: 14 }
                Text {
                    text: Dashboard.cardEstimateText
                    font.pixelSize: Theme.bodySize
                    color: Theme.secondary
                }
            }
            RowLayout {
                visible: Dashboard.cardElapsedText.length > 0
                spacing: 6
                AppIcon { symbol: "stopwatch"; size: 14 }
                Text {
                    objectName: "cardElapsed"
                    text: Dashboard.cardElapsedText
                    font.pixelSize: Theme.bodySize
                    color: Theme.secondary
                }
            }
        }

        RowLayout {
            Layout.topMargin: 6
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
        active: !Dashboard.hasCardTask
        visible: active
        sourceComponent: ColumnLayout {
            objectName: "dayCleared"
            spacing: 8

            AppIcon {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: 10
                symbol: "checkmark.circle.fill"
                size: 34
                color: Theme.green
            }
            Text {
                Layout.alignment: Qt.AlignHCenter
                text: "Day cleared"
                font.pixelSize: Theme.headlineSize
                font.bold: true
                color: Theme.primary
            }
            Text {
                Layout.alignment: Qt.AlignHCenter
                Layout.bottomMargin: 10
                text: "Add a task or choose another day."
                font.pixelSize: Theme.bodySize
                color: Theme.secondary
            }
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The one task to work on now, with the focus controls that fit its state; or, with nothing to
// do, the cleared-day panel.
FocusCard {
    id: root

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
            font.pixelSize: 22
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

            AppButton {
                visible: Dashboard.cardStatus === "active"
                large: true
                text: "Pause"
                symbol: "pause.fill"
                onClicked: Dashboard.pauseActiveTask()
            }
            AppButton {
                visible: Dashboard.cardStatus === "active"
                large: true
                prominent: true
                text: "Done"
                symbol: "checkmark"
                onClicked: Dashboard.completeCardTask()
            }
            AppButton {
                visible: Dashboard.cardStatus === "active"
                large: true
                text: "Skip"
                onClicked: Dashboard.skipActiveTask()
            }
            AppButton {
                visible: Dashboard.cardStatus === "paused"
                large: true
                prominent: true
                text: "Resume Focus"
                symbol: "play.fill"
                onClicked: Dashboard.resumeCardTask()
            }
            AppButton {
                visible: Dashboard.cardStatus === "other"
                large: true
                prominent: true
                text: "Start Focus"
                symbol: "play.fill"
                onClicked: Dashboard.startCardTask()
            }
            AppButton {
                visible: Dashboard.cardStatus === "other"
                large: true
                text: "Edit"
                onClicked: Dashboard.editTask("")
            }
        }
    }

    ColumnLayout {
        objectName: "dayCleared"
        width: parent.width
        visible: !Dashboard.hasCardTask
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
            font.pixelSize: Theme.headlineSize + 1
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

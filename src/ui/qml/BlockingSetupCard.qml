import QtQuick
import QtQuick.Layouts
import Brindlet

// A new standalone session: how long, how firm, and the button that starts it. The choices live
// in the model, so they outlast the screen and the sessions started from them.
ColumnLayout {
    id: root

    readonly property int labelWidth: 76

    objectName: "setupCard"
    spacing: 12

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.spacing
        Text {
            Layout.preferredWidth: root.labelWidth
            text: "Duration"
            font.pixelSize: Theme.bodySize
            color: Theme.primary
        }
        BlockingSegmentedPicker {
            objectName: "durationPicker"
            Layout.fillWidth: true
            label: "Duration"
            titles: BlockingScreen.durationTitles
            currentIndex: BlockingScreen.durationIndex
            onActivated: (index) => BlockingScreen.chooseDuration(index)
        }
    }

    RowLayout {
        visible: BlockingScreen.isCustomDuration
        Layout.fillWidth: true
        spacing: Theme.spacing
        Item { Layout.preferredWidth: root.labelWidth }
        // The value and its buttons kept together, as the pickers' segments are.
        StepperField {
            objectName: "customMinutesStepper"
            Layout.minimumWidth: 180
            text: BlockingScreen.customMinutesText
            onStepped: (direction) => BlockingScreen.stepCustomMinutes(direction)
        }
        Item { Layout.fillWidth: true }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Theme.spacing
        Text {
            Layout.preferredWidth: root.labelWidth
            text: "Mode"
            font.pixelSize: Theme.bodySize
            color: Theme.primary
        }
        BlockingSegmentedPicker {
            objectName: "modePicker"
            Layout.fillWidth: true
            label: "Mode"
            titles: BlockingScreen.modeTitles
            currentIndex: BlockingScreen.modeIndex
            onActivated: (index) => BlockingScreen.chooseMode(index)
        }
    }

    AppButton {
        objectName: "startBlockingButton"
        Layout.fillWidth: true
        Layout.topMargin: 6
        large: true
        prominent: true
        topPadding: 12
        bottomPadding: 12
        text: "Start Blocking"
        symbol: "lock.fill"
        // Never disabled: a group with nothing to block or a length under a minute is refused by
        // the model, and its message comes back through the alert.
        onClicked: BlockingScreen.startBlocking()
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 6
        AppIcon {
            symbol: "touchid"
            size: 13
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 1
        }
        Text {
            objectName: "approvalNote"
            Layout.fillWidth: true
            text: "macOS asks for approval. Tolvane never stores your password."
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallSize
            color: Theme.secondary
        }
    }
}

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The sheet in which one task's details change. Everything edits the draft; only "Save" hands
// the task on, and any way of closing the sheet leaves the stored task as it was.
Popup {
    id: root

    required property TaskDraft draft

    objectName: "taskEditor"
    parent: Overlay.overlay
    anchors.centerIn: parent
    // Wide enough for its widest row, and never narrower than a comfortable sheet.
    width: Math.max(480, implicitContentWidth + leftPadding + rightPadding)
    modal: true
    // A modal sheet takes the keyboard, so that Escape closes it whatever was clicked inside.
    focus: true
    padding: 24
    closePolicy: Popup.CloseOnEscape
    Component.onCompleted: open()
    onClosed: Dashboard.cancelEditor()

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.color: Theme.cardOutline
    }

    contentItem: ColumnLayout {
        spacing: 14

        Text {
            text: "Task details"
            font.pixelSize: Theme.headlineSize + 2
            font.bold: true
            color: Theme.primary
        }

        AppTextField {
            objectName: "editorTitle"
            Layout.fillWidth: true
            placeholderText: "Task title"
            text: root.draft.title
            onTextEdited: root.draft.title = text
        }

        // Notes grow from two lines to five, then scroll.
        ScrollView {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(5, Math.max(2, notes.lineCount)) * notes.lineHeight + 20
            TextArea {
                id: notes

                readonly property real lineHeight: fontMetrics.lineSpacing

                objectName: "editorNotes"
                placeholderText: "Notes"
                placeholderTextColor: Theme.faint
                text: root.draft.notes
                wrapMode: TextEdit.Wrap
                font.pixelSize: Theme.bodySize
                color: Theme.primary
                leftPadding: 12
                rightPadding: 12
                Accessible.name: "Notes"
                onTextChanged: if (text !== root.draft.notes) root.draft.notes = text
                background: Rectangle {
                    radius: Theme.controlRadius
                    color: Theme.surface
                    border.width: notes.activeFocus ? 2 : 1
                    border.color: notes.activeFocus ? Theme.tint(Theme.accent, 0.6)
                                                    : Theme.tint(Theme.primary, 0.14)
                }
                FontMetrics {
                    id: fontMetrics
                    font: notes.font
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            Text { text: "Priority"; font.pixelSize: Theme.bodySize; color: Theme.primary }
            AppComboBox {
                objectName: "editorPriority"
                model: root.draft.priorityTitles
                currentIndex: root.draft.priority
                onActivated: (index) => root.draft.priority = index
                Accessible.name: "Priority"
            }
            Item { Layout.fillWidth: true }
            StepperField {
                objectName: "estimateStepper"
                text: root.draft.estimateText
                onStepped: (direction) => root.draft.stepEstimate(direction)
            }
        }

        StepperField {
            objectName: "timeSpentStepper"
            Layout.fillWidth: true
            text: root.draft.timeSpentText
            onStepped: (direction) => root.draft.stepActualMinutes(direction)
        }

        AppSwitch {
            id: hasStart
            objectName: "scheduleSwitch"
            text: "Schedule a start time"
            checked: root.draft.hasStart
            onToggled: {
                root.draft.hasStart = checked
                checked = Qt.binding(() => root.draft.hasStart)
            }
        }

        RowLayout {
            objectName: "startPicker"
            visible: root.draft.hasStart
            spacing: 8
            Text { text: "Start"; font.pixelSize: Theme.bodySize; color: Theme.primary }
            AppButton {
                objectName: "startEarlier"
                text: "‹"
                Accessible.name: "Previous day"
                onClicked: root.draft.shiftStartDays(-1)
            }
            Text {
                objectName: "startDate"
                text: root.draft.startDateText
                font.pixelSize: Theme.bodySize
                color: Theme.primary
                horizontalAlignment: Text.AlignHCenter
                Layout.minimumWidth: 80
            }
            AppButton {
                objectName: "startLater"
                text: "›"
                Accessible.name: "Next day"
                onClicked: root.draft.shiftStartDays(1)
            }
            AppSpinBox {
                objectName: "startHour"
                from: 0
                to: 23
                value: root.draft.startHour
                onValueModified: root.draft.startHour = value
                textFromValue: (value) => String(value).padStart(2, "0")
            }
            Text { text: ":"; font.pixelSize: Theme.bodySize; color: Theme.primary }
            AppSpinBox {
                objectName: "startMinute"
                from: 0
                to: 59
                value: root.draft.startMinute
                onValueModified: root.draft.startMinute = value
                textFromValue: (value) => String(value).padStart(2, "0")
            }
        }

        AppSwitch {
            objectName: "reminderSwitch"
            text: "Remind me"
            checked: root.draft.reminderOn
            onToggled: {
                root.draft.reminderOn = checked
                // A reminder switched off in this sheet stays off: the switch falls back.
                checked = Qt.binding(() => root.draft.reminderOn)
            }
        }

        ColumnLayout {
            visible: root.draft.reminderOn
            Layout.leftMargin: 24
            spacing: 2
            AppSwitch {
                objectName: "tenMinutesSwitch"
                text: "10 minutes before"
                checked: root.draft.remindTenMinutesBefore
                onToggled: {
                    root.draft.remindTenMinutesBefore = checked
                    checked = Qt.binding(() => root.draft.remindTenMinutesBefore)
                }
            }
            AppSwitch {
                objectName: "overdueSwitch"
                text: "Once when overdue"
                checked: root.draft.remindWhenOverdue
                onToggled: {
                    root.draft.remindWhenOverdue = checked
                    checked = Qt.binding(() => root.draft.remindWhenOverdue)
                }
            }
        }

        RowLayout {
            spacing: 16
            Text { text: "Website blocking"; font.pixelSize: Theme.bodySize; color: Theme.primary }
            AppComboBox {
                objectName: "editorBlocking"
                Layout.fillWidth: true
                model: root.draft.groupNames
                currentIndex: root.draft.groupIndex
                onActivated: (index) => root.draft.groupIndex = index
                Accessible.name: "Website blocking"
            }
        }

        RowLayout {
            Layout.topMargin: 8
            AppButton {
                text: "Cancel"
                onClicked: root.close()
            }
            Item { Layout.fillWidth: true }
            AppButton {
                objectName: "editorSave"
                text: "Save"
                prominent: true
                enabled: root.draft.canSave
                onClicked: Dashboard.saveEditor()
            }
        }
    }
}

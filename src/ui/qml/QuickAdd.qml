import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// A task for the day on show, from its title alone.
Rectangle {
    id: root

    implicitHeight: 50
    radius: Theme.rowRadius
    color: Theme.tint(Theme.accent, 0.06)
    border.width: field.activeFocus ? 1 : 0
    border.color: Theme.tint(Theme.accent, 0.35)

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 8
        spacing: 10

        AppIcon { symbol: "plus.circle.fill"; size: 18; color: Theme.accent }

        TextField {
            id: field
            objectName: "quickAddField"
            Layout.fillWidth: true
            placeholderText: "Add a task for this day"
            placeholderTextColor: Theme.faint
            text: Dashboard.quickTitle
            font.pixelSize: Theme.bodySize
            color: Theme.primary
            background: null
            Accessible.name: "New task title"
            onTextEdited: Dashboard.quickTitle = text
            // Return is not guarded: a blank title is for the model to refuse.
            onAccepted: Dashboard.addTask()
        }

        AppButton {
            objectName: "addButton"
            text: "Add"
            prominent: true
            enabled: Dashboard.canAdd
            onClicked: Dashboard.addTask()
        }
    }
}

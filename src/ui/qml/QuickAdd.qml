import QtQuick
import Brindlet

// A task for the day on show, from its title alone.
Rectangle {
    id: root

    implicitHeight: 50
    radius: Theme.rowRadius
    color: Theme.tint(Theme.accent, 0.06)
    border.width: field.activeFocus ? 1 : 0
    border.color: Theme.tint(Theme.accent, 0.35)

    AppIcon {
        id: plus
        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: "plus.circle.fill"
        size: 18
        color: Theme.accent
    }

    // A plain text input: the row itself is the field's surface.
    TextInput {
        id: field
        objectName: "quickAddField"
        anchors.left: plus.right
        anchors.leftMargin: 10
        anchors.right: add.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        readonly property string placeholderText: "Add a task for this day"
        text: Dashboard.quickTitle
        font.pixelSize: Theme.bodySize
        color: Theme.primary
        selectionColor: Theme.tint(Theme.accent, 0.3)
        selectedTextColor: Theme.primary
        selectByMouse: true
        clip: true
        activeFocusOnTab: true
        Accessible.name: "New task title"
        onTextEdited: Dashboard.quickTitle = text
        // Return is not guarded: a blank title is for the model to refuse.
        onAccepted: Dashboard.addTask()

        Text {
            anchors.fill: parent
            verticalAlignment: Text.AlignVCenter
            visible: field.text.length === 0 && !field.preeditText
            text: field.placeholderText
            font: field.font
            color: Theme.faint
            elide: Text.ElideRight
        }
    }

    AppButton {
        id: add
        objectName: "addButton"
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: "Add"
        prominent: true
        enabled: Dashboard.canAdd
        onClicked: Dashboard.addTask()
    }
}

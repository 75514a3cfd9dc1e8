import QtQuick
import QtQuick.Layouts
import Brindlet

// A value read as text with a pair of step buttons beside it.
RowLayout {
    id: root

    property string text
    signal stepped(int direction)

    spacing: 8

    Text {
        objectName: root.objectName + ".text"
        text: root.text
        font.pixelSize: Theme.bodySize
        color: Theme.primary
        Layout.fillWidth: true
    }

    Row {
        spacing: 1
        AppButton {
            objectName: root.objectName + ".down"
            text: "−"
            width: 34
            Accessible.name: "Decrement"
            onClicked: root.stepped(-1)
        }
        AppButton {
            objectName: root.objectName + ".up"
            text: "+"
            width: 34
            Accessible.name: "Increment"
            onClicked: root.stepped(1)
        }
    }
}

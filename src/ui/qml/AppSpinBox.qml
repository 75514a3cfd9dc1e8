import QtQuick
import QtQuick.Controls
import Brindlet

// A number that can be typed or stepped, on the same rounded, outlined surface as the text
// fields: minus at its left end, plus at its right end.
SpinBox {
    id: root

    editable: true
    font.pixelSize: Theme.bodySize
    implicitWidth: 108
    implicitHeight: 36
    leftPadding: 32
    rightPadding: 32

    contentItem: TextInput {
        text: root.displayText
        font: root.font
        color: Theme.primary
        selectionColor: Theme.tint(Theme.accent, 0.3)
        selectedTextColor: Theme.primary
        horizontalAlignment: Qt.AlignHCenter
        verticalAlignment: Qt.AlignVCenter
        readOnly: !root.editable
        validator: root.validator
        inputMethodHints: Qt.ImhDigitsOnly
        selectByMouse: true
    }

    down.indicator: Rectangle {
        x: 3
        y: 3
        width: 28
        height: root.height - 6
        radius: Theme.controlRadius - 2
        color: root.down.pressed ? Theme.controlHover : (root.down.hovered ? Theme.control : "transparent")
        Text {
            anchors.centerIn: parent
            text: "−"
            font.pixelSize: Theme.bodySize + 2
            color: root.value > root.from ? Theme.primary : Theme.faint
        }
    }

    up.indicator: Rectangle {
        x: root.width - width - 3
        y: 3
        width: 28
        height: root.height - 6
        radius: Theme.controlRadius - 2
        color: root.up.pressed ? Theme.controlHover : (root.up.hovered ? Theme.control : "transparent")
        Text {
            anchors.centerIn: parent
            text: "+"
            font.pixelSize: Theme.bodySize + 2
            color: root.value < root.to ? Theme.primary : Theme.faint
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? Theme.tint(Theme.accent, 0.6) : Theme.tint(Theme.primary, 0.14)
    }
}

import QtQuick
import QtQuick.Controls
import Brindlet

// An on/off switch of the app's own look: the accent track when on.
Switch {
    id: root

    spacing: 10
    font.pixelSize: Theme.bodySize
    Accessible.name: text

    indicator: Rectangle {
        x: root.leftPadding
        y: (root.height - height) / 2
        implicitWidth: 38
        implicitHeight: 22
        radius: height / 2
        color: root.checked ? Theme.accent : Theme.control
        border.width: root.checked ? 0 : 1
        border.color: Theme.cardOutline

        Rectangle {
            x: root.checked ? parent.width - width - 2 : 2
            y: 2
            width: 18
            height: 18
            radius: 9
            color: Theme.surface
            border.width: 1
            border.color: Theme.tint(Theme.primary, 0.12)
        }
    }

    contentItem: Text {
        leftPadding: root.indicator.width + root.spacing
        text: root.text
        font: root.font
        color: Theme.primary
        verticalAlignment: Text.AlignVCenter
    }
}

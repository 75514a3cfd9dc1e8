import QtQuick
import Brindlet

// The small coloured priority label: the name in bold on a capsule of its own colour.
Rectangle {
    id: root

    required property string priority
    readonly property color tone: Theme.priorityColor(priority)

    implicitWidth: label.implicitWidth + 14
    implicitHeight: label.implicitHeight + 4
    radius: height / 2
    color: Theme.tint(tone, 0.14)
    Accessible.role: Accessible.StaticText
    Accessible.name: "Priority " + priority

    Text {
        id: label
        anchors.centerIn: parent
        text: root.priority.length > 0 ? root.priority.charAt(0).toUpperCase() + root.priority.slice(1) : ""
        color: root.tone
        font.pixelSize: Theme.captionSize
        font.bold: true
    }
}

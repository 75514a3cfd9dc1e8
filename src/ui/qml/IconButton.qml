import QtQuick
import Brindlet

// A borderless button that shows only an icon, as inside rows; its text is what assistive
// technology reads. It has a background only while the pointer is over it.
ButtonBase {
    id: root

    property string symbol
    property color tint: Theme.secondary

    implicitWidth: icon.width + 8
    implicitHeight: icon.height + 8

    Rectangle {
        anchors.fill: parent
        visible: root.hovered || root.visualFocus
        radius: Theme.controlRadius
        color: Theme.tint(Theme.primary, 0.06)
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.tint(Theme.accent, 0.5)
    }

    AppIcon {
        id: icon
        anchors.centerIn: parent
        symbol: root.symbol
        size: 14
        color: root.tint
        opacity: root.enabled ? 1 : 0.4
    }
}

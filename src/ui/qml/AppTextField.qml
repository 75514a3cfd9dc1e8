import QtQuick
import QtQuick.Controls
import Brindlet

// A single-line text field on a rounded, outlined surface.
TextField {
    id: root

    font.pixelSize: Theme.bodySize
    color: Theme.primary
    placeholderTextColor: Theme.faint
    leftPadding: 12
    rightPadding: 12
    topPadding: 9
    bottomPadding: 9
    Accessible.name: placeholderText

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? Theme.tint(Theme.accent, 0.6) : Theme.tint(Theme.primary, 0.14)
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The explaining line of a Data Safety card, in secondary type.
Text {
    Layout.fillWidth: true
    wrapMode: Text.Wrap
    lineHeight: 1.15
    font.pixelSize: Theme.bodySize
    color: Theme.secondary
}

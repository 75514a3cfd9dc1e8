import QtQuick
import QtQuick.Layouts
import Brindlet

// The heading of a Data Safety card.
Text {
    Layout.fillWidth: true
    wrapMode: Text.Wrap
    font.pixelSize: Theme.headlineSize
    font.bold: true
    color: Theme.primary
}

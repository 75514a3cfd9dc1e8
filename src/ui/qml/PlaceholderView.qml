import QtQuick
import Brindlet
import QtQuick.Layouts

// A destination whose screen isn't built yet: its title, on the screen's usual background.
Rectangle {
    id: root

    required property string title
    required property string symbol

    color: Theme.background

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 12
        AppIcon {
            Layout.alignment: Qt.AlignHCenter
            symbol: root.symbol
            size: 40
            color: Theme.faint
        }
        Text {
            objectName: "placeholderTitle"
            Layout.alignment: Qt.AlignHCenter
            text: root.title
            font.pixelSize: Theme.titleSize
            font.bold: true
            color: Theme.primary
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The head of a screen: an optional small capital caption, the large bold title and an optional
// secondary line under it. Children go to the far end of the title line.
RowLayout {
    id: root

    property string caption
    property string title
    property string subtitle
    default property alias trailing: trailingRow.data

    spacing: Theme.spacing

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2
        Text {
            visible: root.caption.length > 0
            text: root.caption
            font.pixelSize: Theme.captionSize
            font.bold: true
            font.letterSpacing: 1.2
            color: Theme.secondary
        }
        Text {
            objectName: "screenTitle"
            Layout.fillWidth: true
            text: root.title
            wrapMode: Text.Wrap
            font.pixelSize: Theme.titleSize
            font.bold: true
            color: Theme.primary
        }
        Text {
            objectName: "screenSubtitle"
            Layout.fillWidth: true
            visible: root.subtitle.length > 0
            text: root.subtitle
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
        }
    }

    RowLayout {
        id: trailingRow
        Layout.alignment: Qt.AlignBottom
        spacing: Theme.smallSpacing
    }
}

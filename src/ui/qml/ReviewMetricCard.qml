import QtQuick
import QtQuick.Layouts
import Brindlet

// One figure of the week: a small title, the value in large type and a line saying what it is.
FocusCard {
    id: root

    property string title
    property string value
    property string detail

    objectName: "metric." + title

    ColumnLayout {
        width: parent.width
        spacing: 4

        Text {
            Layout.fillWidth: true
            text: root.title
            elide: Text.ElideRight
            font.pixelSize: Theme.smallSize
            color: Theme.secondary
        }
        Text {
            objectName: "metricValue"
            Layout.fillWidth: true
            text: root.value
            elide: Text.ElideRight
            font.pixelSize: 26
            font.bold: true
            color: Theme.primary
        }
        Text {
            objectName: "metricDetail"
            Layout.fillWidth: true
            text: root.detail
            elide: Text.ElideRight
            font.pixelSize: Theme.smallSize
            color: Theme.secondary
        }
    }
}

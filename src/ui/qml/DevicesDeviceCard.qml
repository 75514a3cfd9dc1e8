import QtQuick
import QtQuick.Layouts
import Brindlet

// One paired iPhone: its name, its status and when it was last seen, and a dot that turns
// orange when it hasn't been heard from for a while.
FocusCard {
    id: root

    required property string deviceId
    required property string name
    required property string caption
    required property bool isStale

    objectName: "deviceCard." + deviceId

    RowLayout {
        width: parent.width
        spacing: 14

        Rectangle {
            implicitWidth: 40
            implicitHeight: 40
            radius: Theme.controlRadius
            color: Theme.tint(Theme.accent, 0.1)
            AppIcon {
                anchors.centerIn: parent
                symbol: "iphone"
                size: Theme.headlineSize + 5
                color: Theme.accent
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            Text {
                objectName: "deviceName." + root.deviceId
                Layout.fillWidth: true
                text: root.name
                elide: Text.ElideRight
                font.pixelSize: Theme.bodySize + 1
                font.weight: Font.DemiBold
                color: Theme.primary
            }
            Text {
                objectName: "deviceCaption." + root.deviceId
                Layout.fillWidth: true
                text: root.caption
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallSize
                color: root.isStale ? Theme.orange : Theme.secondary
            }
        }
        Rectangle {
            objectName: "deviceDot." + root.deviceId
            implicitWidth: 10
            implicitHeight: 10
            radius: 5
            color: root.isStale ? Theme.orange : Theme.green
            Accessible.role: Accessible.Indicator
            Accessible.name: root.isStale ? "Connection stale" : "Recently connected"
        }
    }
}

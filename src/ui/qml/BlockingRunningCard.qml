import QtQuick
import QtQuick.Layouts
import Brindlet

// The session in force: its time left, its kind and its group; a flexible one can be ended here
// at once, a strict one only runs out.
ColumnLayout {
    id: root

    objectName: "runningCard"
    spacing: 4

    Text {
        objectName: "countdown"
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 6
        text: BlockingScreen.countdown
        font.pixelSize: 64
        font.weight: Font.DemiBold
        color: Theme.primary
    }

    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 2
        spacing: 7
        AppIcon {
            symbol: BlockingScreen.canEndSession ? "shield.fill" : "lock.fill"
            size: 15
            color: Theme.accent
        }
        Text {
            objectName: "sessionHeading"
            text: BlockingScreen.sessionHeading
            font.pixelSize: Theme.headlineSize
            font.bold: true
            color: Theme.primary
        }
    }

    Text {
        objectName: "sessionGroupName"
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: BlockingScreen.sessionGroupName
        wrapMode: Text.Wrap
        font.pixelSize: Theme.bodySize
        color: Theme.secondary
    }

    AppButton {
        objectName: "endSessionButton"
        visible: BlockingScreen.canEndSession
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 14
        Layout.bottomMargin: 4
        large: true
        text: "End Session"
        tint: Theme.red
        fill: Theme.tint(Theme.red, down ? 0.22 : (hovered ? 0.16 : 0.1))
        focusOutline: Theme.tint(Theme.red, 0.5)
        onClicked: BlockingScreen.endSession()
    }

    Item {
        visible: !BlockingScreen.canEndSession
        implicitHeight: 6
    }
}

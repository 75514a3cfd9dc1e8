import QtQuick
import QtQuick.Layouts
import Brindlet

// The Devices destination: whether the paired iPhone confirmed protection, and how to pair. It
// only shows; pairing happens on the phone.
ScreenPage {
    objectName: "devicesView"
    maxWidth: 760

    ScreenTitle {
        Layout.fillWidth: true
        title: "Devices"
        subtitle: "See whether your iPhone confirmed protection. No app selections leave the phone."
    }

    DevicesStatusCard { Layout.fillWidth: true }

    FocusCard {
        objectName: "pairingHelp"
        Layout.fillWidth: true
        visible: DevicesScreen.devices.count === 0

        ColumnLayout {
            width: parent.width
            spacing: 10

            RowLayout {
                spacing: 8
                AppIcon {
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: 3
                    symbol: "iphone"
                    size: 18
                    color: Theme.accent
                }
                Text {
                    text: "Pair your iPhone"
                    font.pixelSize: Theme.headlineSize
                    font.bold: true
                    color: Theme.primary
                }
            }
            Text {
                objectName: "pairingSteps"
                Layout.fillWidth: true
                text: "1. Install and open Tolvane on iPhone.\n"
                      + "2. Use the same iCloud account as this Mac.\n"
                      + "3. Allow Screen Time and choose apps on the iPhone."
                wrapMode: Text.Wrap
                lineHeight: 1.3
                font.pixelSize: Theme.bodySize
                color: Theme.secondary
            }
        }
    }

    ColumnLayout {
        objectName: "deviceList"
        Layout.fillWidth: true
        visible: DevicesScreen.devices.count > 0
        spacing: 10

        Repeater {
            model: DevicesScreen.devices
            delegate: DevicesDeviceCard { Layout.fillWidth: true }
        }
    }
}

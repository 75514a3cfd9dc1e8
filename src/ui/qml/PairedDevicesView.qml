import QtQuick
import QtQuick.Layouts
import Brindlet

// The Devices destination: whether the paired iPhone confirmed protection, and how to pair.
ScreenPage {
    objectName: "devicesView"

    ScreenTitle {
        Layout.fillWidth: true
        title: "Devices"
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The Data Safety destination: the backup status, the daily copy, export and restore.
ScreenPage {
    objectName: "dataSafetyView"

    ScreenTitle {
        Layout.fillWidth: true
        title: "Data Safety"
    }
}

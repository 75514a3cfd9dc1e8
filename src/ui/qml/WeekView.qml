import QtQuick
import QtQuick.Layouts
import Brindlet

// The Week destination: the seven days of the selected week and the unscheduled tasks.
ScreenPage {
    objectName: "weekView"

    ScreenTitle {
        Layout.fillWidth: true
        title: "Arrange a realistic week"
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The Review destination: the week's figures, its workload and the recommendations.
ScreenPage {
    objectName: "reviewView"

    ScreenTitle {
        Layout.fillWidth: true
        title: "Learn from what you finished"
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The Week destination: the seven days of the selected week and the unscheduled tasks, as a
// board whose cards move between columns by dragging or through their menus.
ScreenPage {
    objectName: "weekView"
    // The board takes the whole width of the window and scrolls sideways within it.
    maxWidth: 100000

    ScreenTitle {
        Layout.fillWidth: true
        caption: "WEEK PLAN"
        title: "Arrange a realistic week"

        AppButton {
            objectName: "weekTodayButton"
            text: "Today"
            onClicked: WeekScreen.showToday()
        }
    }

    WeekBoard { Layout.fillWidth: true }
}

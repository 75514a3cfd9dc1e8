import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The main window: the sidebar, the screen of the chosen destination, the alert and the editor.
ApplicationWindow {
    id: root

    title: "Brindlet"
    width: 1040
    height: 780
    minimumWidth: 860
    minimumHeight: 680
    visible: true
    color: Theme.background

    // The model's start-up pass and heartbeat run while this window is on screen.
    onVisibleChanged: Dashboard.setWindowShown(visible)

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            objectName: "sidebar"
            Layout.fillHeight: true
            Layout.preferredWidth: 232
        }

        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: Theme.cardOutline
        }

        Loader {
            id: detail
            objectName: "detail"
            Layout.fillWidth: true
            Layout.fillHeight: true
            // In the order of the sidebar; a cleared selection shows Today.
            sourceComponent: [todayScreen, weekScreen, reviewScreen, blockingScreen, devicesScreen,
                              dataSafetyScreen][Math.max(0, Dashboard.destination)]
        }
    }

    Component { id: todayScreen; TodayView {} }
    Component { id: weekScreen; WeekView {} }
    Component { id: reviewScreen; ReviewView {} }
    Component { id: blockingScreen; BlockingDashboardView {} }
    Component { id: devicesScreen; PairedDevicesView {} }
    Component { id: dataSafetyScreen; DataSafetyView {} }

    // Made when the first error arrives, then kept: most sessions never need it.
    Loader {
        active: Dashboard.alertShown || item !== null
        sourceComponent: ErrorAlert {}
    }

    // The editor sheet, made anew for every task that is opened.
    Loader {
        active: Dashboard.draft !== null
        sourceComponent: TaskEditorView {
            draft: Dashboard.draft
        }
    }
}

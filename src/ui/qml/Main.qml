import QtQuick
import Brindlet

// The main window: the sidebar, the screen of the chosen destination, the alert and the editor.
Window {
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

    Sidebar {
        id: sidebar
        objectName: "sidebar"
        width: 232
        height: parent.height
    }

    Rectangle {
        id: divider
        anchors.left: sidebar.right
        width: 1
        height: parent.height
        color: Theme.cardOutline
    }

    Loader {
        id: detail
        objectName: "detail"
        anchors.left: divider.right
        anchors.right: parent.right
        height: parent.height
        // Today stands as an empty frame until the plan is read; any other screen chosen by
        // then is made once the plan is there, rather than showing a plan it has not read.
        active: Dashboard.planRead || Dashboard.destination <= 0
        // In the order of the sidebar; a cleared selection shows Today. Each screen is read
        // the first time it is chosen, so that starting up reads only the one on show.
        source: ["TodayView.qml", "WeekView.qml", "ReviewView.qml", "BlockingDashboardView.qml",
                 "PairedDevicesView.qml", "DataSafetyView.qml"][Math.max(0, Dashboard.destination)]
    }

    // Made when the first error arrives, then kept: most sessions never need it.
    Loader {
        active: Dashboard.alertShown || item !== null
        source: "ErrorAlert.qml"
    }

    // The editor sheet, made anew for every task that is opened.
    Loader {
        id: editor

        function follow() {
            if (Dashboard.draft !== null)
                setSource("TaskEditorView.qml", { draft: Dashboard.draft })
            else
                source = ""
        }

        Component.onCompleted: follow()
        Connections {
            target: Dashboard
            function onDraftChanged() { editor.follow() }
        }
    }
}

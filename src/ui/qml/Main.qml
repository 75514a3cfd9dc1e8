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
            sourceComponent: Dashboard.destination <= 0 ? todayScreen : placeholderScreen
        }
    }

    Component {
        id: todayScreen
        TodayView {}
    }

    Component {
        id: placeholderScreen
        PlaceholderView {
            title: Dashboard.destinationTitles[Dashboard.destination]
            symbol: Dashboard.destinationSymbols[Dashboard.destination]
        }
    }

    ErrorAlert {}

    // The editor sheet, made anew for every task that is opened.
    Loader {
        active: Dashboard.draft !== null
        sourceComponent: TaskEditorView {
            draft: Dashboard.draft
        }
    }
}

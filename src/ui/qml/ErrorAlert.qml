import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The one alert through which every failed command reaches the user. It shows whenever the
// model holds an error text, blank or not; "OK" and any other way of closing clear it.
Dialog {
    id: root

    readonly property bool wanted: Dashboard.alertShown

    objectName: "errorAlert"
    parent: Overlay.overlay
    anchors.centerIn: parent
    width: 380
    modal: true
    padding: 22
    closePolicy: Popup.CloseOnEscape

    onWantedChanged: wanted ? open() : close()
    Component.onCompleted: if (wanted) open()
    onClosed: Dashboard.dismissAlert()

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.color: Theme.cardOutline
    }

    header: null

    contentItem: ColumnLayout {
        spacing: 10
        Text {
            text: Dashboard.navigationTitle
            font.pixelSize: Theme.headlineSize
            font.bold: true
            color: Theme.primary
        }
        Text {
            objectName: "errorAlertMessage"
            Layout.fillWidth: true
            text: Dashboard.alertText
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
        }
        AppButton {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: 8
            text: "OK"
            prominent: true
            onClicked: root.close()
        }
    }
}

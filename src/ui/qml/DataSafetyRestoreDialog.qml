import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// The question before a restore. It shows exactly while a file is chosen and not yet confirmed;
// "Restore Backup" goes ahead, "Cancel" and any other way of closing forget the file.
Dialog {
    id: root

    readonly property bool wanted: DataSafetyScreen.restorePending

    objectName: "restoreConfirmation"
    parent: Overlay.overlay
    anchors.centerIn: parent
    width: 380
    modal: true
    focus: true
    padding: 22
    closePolicy: Popup.CloseOnEscape

    onWantedChanged: wanted ? open() : close()
    Component.onCompleted: if (wanted) open()
    onClosed: DataSafetyScreen.cancelRestore()

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.color: Theme.cardOutline
    }

    header: null

    contentItem: ColumnLayout {
        spacing: 10
        Text {
            objectName: "restoreQuestion"
            Layout.fillWidth: true
            text: "Restore this backup?"
            wrapMode: Text.Wrap
            font.pixelSize: Theme.headlineSize
            font.bold: true
            color: Theme.primary
        }
        Text {
            Layout.fillWidth: true
            text: "Your current database will be backed up first."
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
        }
        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: 8
            spacing: 8
            AppButton {
                text: "Cancel"
                onClicked: root.close()
            }
            AppButton {
                objectName: "confirmRestore"
                text: "Restore Backup"
                tint: Theme.red
                onClicked: DataSafetyScreen.confirmRestore()
            }
        }
    }
}

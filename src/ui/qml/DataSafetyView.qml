import QtQuick
import QtQuick.Layouts
import Brindlet

// The Data Safety destination: how the data is protected, today's copy, a portable export and a
// restore that asks first.
ScreenPage {
    objectName: "dataSafetyView"
    maxWidth: 760

    // A file chosen for restoring belongs to this visit of the screen only.
    Component.onDestruction: DataSafetyScreen.cancelRestore()

    ScreenTitle {
        Layout.fillWidth: true
        title: "Data Safety"
        subtitle: "Your tasks and history stay on this Mac, with independent recovery copies."
    }

    FocusCard {
        objectName: "backupStatusCard"
        Layout.fillWidth: true

        ColumnLayout {
            width: parent.width
            spacing: 10

            RowLayout {
                Layout.fillWidth: true
                spacing: 8
                Accessible.role: Accessible.StaticText
                Accessible.name: statusText.text

                AppIcon {
                    objectName: "backupStatusIcon"
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: 3
                    symbol: "checkmark.shield.fill"
                    size: 18
                    color: Theme.green
                }
                Text {
                    id: statusText
                    objectName: "backupStatus"
                    Layout.fillWidth: true
                    text: DataSafetyScreen.backupStatus
                    wrapMode: Text.Wrap
                    font.pixelSize: Theme.headlineSize
                    font.weight: Font.DemiBold
                    color: Theme.green
                }
            }

            DataSafetyNote {
                text: "A daily copy is stored in Documents/Brindlet Backups. Every edit also preserves the previous database version."
            }

            AppButton {
                Layout.topMargin: 6
                text: "Back Up Now"
                symbol: "externaldrive.fill.badge.checkmark"
                prominent: true
                onClicked: DataSafetyScreen.backUpNow()
            }
        }
    }

    FocusCard {
        objectName: "exportCard"
        Layout.fillWidth: true

        ColumnLayout {
            width: parent.width
            spacing: 10

            DataSafetyHeading { text: "Portable backup" }
            DataSafetyNote { text: "Export a complete JSON backup you can keep on another drive." }

            AppButton {
                Layout.topMargin: 6
                text: "Export Backup…"
                symbol: "square.and.arrow.up"
                onClicked: DataSafetyScreen.exportBackup()
            }
        }
    }

    FocusCard {
        objectName: "restoreCard"
        Layout.fillWidth: true

        ColumnLayout {
            width: parent.width
            spacing: 10

            DataSafetyHeading { text: "Restore" }
            DataSafetyNote {
                text: "Brindlet validates the backup and preserves your current database before restoring."
            }

            AppButton {
                objectName: "restoreButton"
                Layout.topMargin: 6
                text: "Restore Backup…"
                symbol: "square.and.arrow.down"
                // Restoring replaces the plan: the one dangerous act here looks it.
                tint: Theme.red
                onClicked: DataSafetyScreen.chooseRestore()
            }
        }
    }

    DataSafetyRestoreDialog {}
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The blocked domains of the selected group, editable unless `locked`. It always edits the group
// the model has selected; there is no choosing another one here.
FocusCard {
    id: root

    property bool locked: false

    objectName: "domainEditor"

    ColumnLayout {
        width: parent.width
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: 4
            spacing: Theme.spacing

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Text {
                    objectName: "domainGroupName"
                    Layout.fillWidth: true
                    text: BlockingScreen.groupName
                    elide: Text.ElideRight
                    font.pixelSize: Theme.headlineSize
                    font.bold: true
                    color: Theme.primary
                }
                Text {
                    text: "Blocked on this Mac"
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }

            RowLayout {
                objectName: "lockedLabel"
                visible: root.locked
                Layout.alignment: Qt.AlignTop
                spacing: 5
                AppIcon { symbol: "lock.fill"; size: 12 }
                Text {
                    text: "Locked"
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }
        }

        Repeater {
            model: BlockingScreen.rules
            delegate: BlockingDomainRow {
                Layout.fillWidth: true
                locked: root.locked
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: 4
            spacing: 8

            AppTextField {
                id: field
                objectName: "domainField"
                Layout.fillWidth: true
                placeholderText: "example.com"
                text: BlockingScreen.domainInput
                enabled: !root.locked
                opacity: enabled ? 1 : 0.5
                onTextEdited: BlockingScreen.domainInput = text
                // Return adds nothing: only the button does.
            }

            AppButton {
                objectName: "addDomainButton"
                text: "Add"
                symbol: "plus.circle.fill"
                // Blank text still counts: trimming and judging a domain are the model's.
                enabled: !root.locked && BlockingScreen.domainInput.length > 0
                onClicked: BlockingScreen.addDomain()
            }
        }
    }
}

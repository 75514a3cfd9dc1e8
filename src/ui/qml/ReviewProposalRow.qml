import QtQuick
import QtQuick.Layouts
import Brindlet

// One recommendation: why, for which task, the move it suggests, and the two decisions.
Rectangle {
    id: root

    required property string proposalId
    required property string reason
    required property string taskTitle
    required property string change

    objectName: "proposalRow." + taskTitle
    implicitHeight: Math.max(64, content.implicitHeight + 22)
    radius: Theme.rowRadius
    color: Theme.rowFill

    RowLayout {
        id: content

        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 10
        spacing: 12

        AppIcon {
            Layout.alignment: Qt.AlignVCenter
            symbol: "sparkles"
            size: 18
            color: Theme.accent
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            Text {
                objectName: "proposalReason"
                Layout.fillWidth: true
                text: root.reason
                wrapMode: Text.Wrap
                font.pixelSize: Theme.bodySize
                color: Theme.primary
            }
            Text {
                objectName: "proposalTask"
                Layout.fillWidth: true
                text: root.taskTitle
                elide: Text.ElideRight
                font.pixelSize: Theme.smallSize
                color: Theme.primary
            }
            Text {
                objectName: "proposalChange"
                Layout.fillWidth: true
                text: root.change
                elide: Text.ElideRight
                font.pixelSize: Theme.smallSize
                color: Theme.secondary
            }
        }

        AppButton {
            objectName: "dismiss." + root.taskTitle
            text: "Dismiss"
            onClicked: ReviewScreen.dismissProposal(root.proposalId)
        }
        AppButton {
            objectName: "approve." + root.taskTitle
            text: "Approve"
            prominent: true
            onClicked: ReviewScreen.approveProposal(root.proposalId)
        }
    }
}

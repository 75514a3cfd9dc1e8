import QtQuick
import Brindlet

// How website protection stands: a dot and a caption, and when protection needs attention the
// reason and a way to apply it again.
Column {
    id: root

    readonly property color dotColor: Dashboard.footerState === "attention" ? Theme.orange
                                    : Dashboard.footerState === "active" ? Theme.green
                                    : Theme.grey

    objectName: "sidebarFooter"
    spacing: 8

    // The rule above, set a little further from the caption than the caption from the rest.
    Item {
        width: root.width
        height: 5
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.cardOutline
        }
    }

    Row {
        leftPadding: 10
        spacing: 8
        // Protection is not known to be off before the model has read it.
        opacity: Dashboard.planRead ? 1 : 0
        Rectangle {
            objectName: "footerDot"
            anchors.verticalCenter: parent.verticalCenter
            width: 9
            height: 9
            radius: 4.5
            color: root.dotColor
        }
        Text {
            objectName: "footerCaption"
            anchors.verticalCenter: parent.verticalCenter
            text: Dashboard.footerCaption
            font.pixelSize: Theme.smallSize
            color: Theme.primary
        }
    }

    // The reason and the way to apply protection again, made only while it needs attention.
    Loader {
        width: root.width
        active: Dashboard.footerState === "attention"
        visible: active
        sourceComponent: Column {
            spacing: 8
            Text {
                x: 10
                width: parent.width - 16
                text: Dashboard.protectionError
                wrapMode: Text.Wrap
                font.pixelSize: Theme.captionSize
                color: Theme.secondary
            }
            AppButton {
                x: 8
                text: "Reapply protection"
                font.pixelSize: Theme.smallSize
                onClicked: Dashboard.retryProtection()
            }
        }
    }
}

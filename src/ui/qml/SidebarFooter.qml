import QtQuick
import QtQuick.Layouts
import Brindlet

// How website protection stands: a dot and a caption, and when protection needs attention the
// reason and a way to apply it again.
ColumnLayout {
    id: root

    readonly property color dotColor: Dashboard.footerState === "attention" ? Theme.orange
                                    : Dashboard.footerState === "active" ? Theme.green
                                    : Theme.grey

    objectName: "sidebarFooter"
    spacing: 8

    Rectangle {
        Layout.fillWidth: true
        Layout.bottomMargin: 4
        implicitHeight: 1
        color: Theme.cardOutline
    }

    RowLayout {
        Layout.leftMargin: 10
        spacing: 8
        Rectangle {
            objectName: "footerDot"
            implicitWidth: 9
            implicitHeight: 9
            radius: 4.5
            color: root.dotColor
        }
        Text {
            objectName: "footerCaption"
            text: Dashboard.footerCaption
            font.pixelSize: Theme.smallSize
            color: Theme.primary
        }
    }

    // The reason and the way to apply protection again, made only while it needs attention.
    Loader {
        Layout.fillWidth: true
        active: Dashboard.footerState === "attention"
        visible: active
        sourceComponent: ColumnLayout {
            spacing: 8
            Text {
                Layout.fillWidth: true
                Layout.leftMargin: 10
                Layout.rightMargin: 6
                text: Dashboard.protectionError
                wrapMode: Text.Wrap
                font.pixelSize: Theme.captionSize
                color: Theme.secondary
            }
            AppButton {
                Layout.leftMargin: 8
                text: "Reapply protection"
                font.pixelSize: Theme.smallSize
                onClicked: Dashboard.retryProtection()
            }
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The frame of a screen: the shared background and one scrolling column, centred and at most
// `maxWidth` wide. The screen's parts go in as children of the column.
Item {
    id: root

    default property alias content: column.data
    property int maxWidth: Theme.contentMaxWidth
    property alias spacing: column.spacing
    readonly property alias flickable: scroller

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.background }
            GradientStop { position: 1; color: Qt.tint(Theme.background, Theme.tint(Theme.accent, 0.05)) }
        }
    }

    Flickable {
        id: scroller
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 64
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        ColumnLayout {
            id: column
            x: Math.max(28, (scroller.width - width) / 2)
            y: 30
            width: Math.min(root.maxWidth, scroller.width - 56)
            spacing: 22
        }
    }

    AppScrollBar {
        objectName: "scrollBar"
        flickable: scroller
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
    }
}

import QtQuick
import Brindlet

// The frame of a screen: the shared background and a scrolling area with its scroll bar. The
// screen's column goes in as the frame's child, placed at `contentX` and `contentWidth`, and
// tells the frame its height through `contentHeight`.
Item {
    id: root

    default property alias content: scroller.flickableData
    property int maxWidth: Theme.contentMaxWidth
    property real contentHeight: 0
    readonly property real contentWidth: Math.min(maxWidth, scroller.width - 56)
    readonly property real contentX: Math.max(28, (scroller.width - contentWidth) / 2)
    readonly property alias flickable: scroller

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.background }
            GradientStop { position: 1; color: Theme.backgroundShade }
        }
    }

    Flickable {
        id: scroller
        anchors.fill: parent
        contentWidth: width
        contentHeight: root.contentHeight + 64
        boundsBehavior: Flickable.StopAtBounds
        clip: true
    }

    AppScrollBar {
        objectName: "scrollBar"
        flickable: scroller
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The screen's title and, at its far end, the week under review with the buttons that move it.
ScreenTitle {
    id: root

    caption: "WEEKLY REVIEW"
    title: "Learn from what you finished"

    IconButton {
        objectName: "previousWeek"
        symbol: "chevron.left"
        Accessible.name: "Previous week"
        onClicked: ReviewScreen.changeWeek(-1)
    }
    Text {
        objectName: "weekRange"
        // A fixed width, so that the buttons stay put whatever the dates' length.
        Layout.preferredWidth: 170
        horizontalAlignment: Text.AlignHCenter
        text: ReviewScreen.weekRangeText
        elide: Text.ElideRight
        font.pixelSize: Theme.bodySize
        color: Theme.primary
    }
    IconButton {
        objectName: "nextWeek"
        symbol: "chevron.right"
        Accessible.name: "Next week"
        onClicked: ReviewScreen.changeWeek(1)
    }
}

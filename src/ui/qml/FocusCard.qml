import QtQuick
import Brindlet

// The card decoration that the screens share: inner padding over a translucent surface in a
// rounded rectangle with a thin outline. Content goes into `contentItem`'s place as children.
Item {
    id: root

    default property alias content: inner.data
    property int padding: Theme.padding

    // As tall as the tallest visible part: a card may hold alternatives of which one shows.
    implicitHeight: {
        let tallest = 0
        for (let i = 0; i < inner.children.length; ++i) {
            const child = inner.children[i]
            if (child.visible) tallest = Math.max(tallest, child.implicitHeight)
        }
        return tallest + 2 * padding
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.cardFill
        border.width: 1
        border.color: Theme.cardOutline
    }

    Item {
        id: inner
        anchors.fill: parent
        anchors.margins: root.padding
    }
}

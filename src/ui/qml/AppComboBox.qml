import QtQuick
import QtQuick.Controls
import Brindlet

// A choice from a short list, on the same rounded, outlined surface as the text fields, with a
// chevron at its end and its list in a card of the same look.
ComboBox {
    id: root

    font.pixelSize: Theme.bodySize
    implicitHeight: 36
    leftPadding: 12
    rightPadding: 36
    topPadding: 0
    bottomPadding: 0

    contentItem: Text {
        text: root.displayText
        font: root.font
        color: Theme.primary
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    indicator: AppIcon {
        x: root.width - width - 12
        y: (root.height - height) / 2
        symbol: "chevron.down"
        size: 14
        color: Theme.secondary
    }

    background: Rectangle {
        implicitWidth: 150
        radius: Theme.controlRadius
        color: root.down || root.hovered ? Qt.tint(Theme.surface, Theme.tint(Theme.primary, 0.03))
                                         : Theme.surface
        border.width: root.visualFocus ? 2 : 1
        border.color: root.visualFocus ? Theme.tint(Theme.accent, 0.6) : Theme.tint(Theme.primary, 0.14)
    }

    delegate: ItemDelegate {
        required property int index
        required property string modelData

        width: ListView.view ? ListView.view.width : implicitWidth
        highlighted: root.highlightedIndex === index
        leftPadding: 12
        contentItem: Text {
            text: parent.modelData
            font: root.font
            color: parent.highlighted ? Theme.accent : Theme.primary
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }
        background: Rectangle {
            radius: Theme.controlRadius - 2
            color: parent.highlighted ? Theme.tint(Theme.accent, 0.12) : "transparent"
        }
    }

    popup.background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.color: Theme.cardOutline
    }
}

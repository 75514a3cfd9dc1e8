import QtQuick
import Brindlet

// The navigation column: the title, the six destinations and the protection footer pinned to
// the bottom.
Rectangle {
    id: root

    color: Theme.sidebar

    Column {
        anchors.top: parent.top
        anchors.topMargin: 22
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 12
        spacing: 4

        Text {
            text: Dashboard.navigationTitle
            font.pixelSize: Theme.displaySize
            font.bold: true
            color: Theme.primary
            leftPadding: 10
            bottomPadding: 14
        }

        Repeater {
            model: Dashboard.destinationTitles
            delegate: Rectangle {
                id: row

                required property int index
                required property string modelData
                readonly property bool selected: Dashboard.destination === index

                objectName: "destination." + modelData
                width: parent.width
                height: 36
                radius: Theme.controlRadius
                color: selected ? Theme.tint(Theme.accent, 0.16)
                                : (hover.hovered ? Theme.tint(Theme.primary, 0.05) : "transparent")
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData
                Accessible.selected: selected

                AppIcon {
                    id: icon
                    anchors.left: parent.left
                    anchors.leftMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: Dashboard.destinationSymbols[row.index]
                    color: row.selected ? Theme.accent : Theme.secondary
                }
                Text {
                    anchors.left: icon.right
                    anchors.leftMargin: 10
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData
                    font.pixelSize: Theme.bodySize
                    font.weight: row.selected ? Font.DemiBold : Font.Normal
                    color: row.selected ? Theme.accent : Theme.primary
                }

                HoverHandler { id: hover }
                TapHandler {
                    id: tap
                    // A list's selection can be cleared with the control key, as in any list.
                    onTapped: {
                        const clearing = (tap.point.modifiers & Qt.ControlModifier) && row.selected
                        Dashboard.destination = clearing ? -1 : row.index
                    }
                }
            }
        }
    }

    SidebarFooter {
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The navigation column: the title, the six destinations and the protection footer pinned to
// the bottom.
Rectangle {
    id: root

    color: Theme.sidebar

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: 22
        anchors.bottomMargin: 16
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        spacing: 4

        Text {
            text: Dashboard.navigationTitle
            font.pixelSize: Theme.displaySize
            font.bold: true
            color: Theme.primary
            Layout.leftMargin: 10
            Layout.bottomMargin: 14
        }

        Repeater {
            model: Dashboard.destinationTitles
            delegate: Rectangle {
                id: row

                required property int index
                required property string modelData
                readonly property bool selected: Dashboard.destination === index

                objectName: "destination." + modelData
                Layout.fillWidth: true
                implicitHeight: 36
                radius: Theme.controlRadius
                color: selected ? Theme.tint(Theme.accent, 0.16)
                                : (hover.hovered ? Theme.tint(Theme.primary, 0.05) : "transparent")
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData
                Accessible.selected: selected

                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 10
                    spacing: 10
                    AppIcon {
                        symbol: Dashboard.destinationSymbols[row.index]
                        color: row.selected ? Theme.accent : Theme.secondary
                    }
                    Text {
                        text: row.modelData
                        Layout.fillWidth: true
                        font.pixelSize: Theme.bodySize
                        font.weight: row.selected ? Font.DemiBold : Font.Normal
                        color: row.selected ? Theme.accent : Theme.primary
                    }
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

        Item { Layout.fillHeight: true }

        SidebarFooter { Layout.fillWidth: true }
    }
}

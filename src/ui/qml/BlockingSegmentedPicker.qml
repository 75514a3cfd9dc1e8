import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Brindlet

// A row of mutually exclusive segments on one track, the chosen one raised on a white surface.
// Choosing a segment only reports it: what is chosen comes back through `currentIndex`.
Rectangle {
    id: root

    property string label
    property var titles: []
    property int currentIndex: -1
    signal activated(int index)

    implicitHeight: 34
    implicitWidth: segments.implicitWidth + 6
    radius: Theme.controlRadius + 1
    color: Theme.control
    Accessible.role: Accessible.PageTabList
    Accessible.name: label

    RowLayout {
        id: segments
        anchors.fill: parent
        anchors.margins: 3
        spacing: 2

        Repeater {
            model: root.titles

            delegate: AbstractButton {
                id: segment

                required property int index
                required property string modelData
                readonly property bool selected: index === root.currentIndex

                objectName: root.objectName + "." + modelData
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 1
                implicitWidth: caption.implicitWidth + 28
                text: modelData
                hoverEnabled: true
                focusPolicy: Qt.StrongFocus
                Accessible.role: Accessible.PageTab
                Accessible.name: modelData
                Accessible.selected: selected

                contentItem: Text {
                    id: caption
                    text: segment.modelData
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    font.pixelSize: Theme.bodySize - 1
                    font.weight: segment.selected ? Font.DemiBold : Font.Normal
                    color: segment.selected ? Theme.primary : Theme.secondary
                }

                background: Rectangle {
                    radius: Theme.controlRadius - 1
                    color: segment.selected ? Theme.surface
                                            : (segment.hovered ? Theme.tint(Theme.primary, 0.05) : "transparent")
                    border.width: segment.visualFocus ? 2 : (segment.selected ? 1 : 0)
                    border.color: segment.visualFocus ? Theme.tint(Theme.accent, 0.5) : Theme.cardOutline
                }

                onClicked: root.activated(index)
            }
        }
    }
}

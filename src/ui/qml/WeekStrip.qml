import QtQuick
import QtQuick.Layouts
import Brindlet

// Seven equal buttons, Monday first: each day's label and how many open tasks it holds.
RowLayout {
    id: root

    objectName: "weekStrip"
    spacing: 8

    // Always seven cells, made once: each state only changes what they read, so neither the
    // heartbeat nor a new day rebuilds the strip under the user's pointer.
    Repeater {
        model: 7
        delegate: Rectangle {
            id: day

            required property int index
            readonly property var modelData: Dashboard.weekDays[index]

            objectName: "weekDay." + index
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            implicitHeight: 58
            radius: Theme.rowRadius
            color: modelData.selected ? Theme.tint(Theme.accent, 0.18)
                                      : Theme.tint(Theme.primary, hover.hovered ? 0.07 : 0.04)
            Accessible.role: Accessible.Button
            Accessible.name: modelData.accessibleName
            Accessible.onPressAction: Dashboard.selectDay(index)

            ColumnLayout {
                anchors.centerIn: parent
                spacing: 3
                Text {
                    objectName: "weekDayLabel"
                    Layout.alignment: Qt.AlignHCenter
                    text: day.modelData.label
                    font.pixelSize: Theme.bodySize
                    font.weight: day.modelData.selected ? Font.DemiBold : Font.Normal
                    color: day.modelData.selected ? Theme.accent : Theme.primary
                }
                Text {
                    objectName: "weekDayCount"
                    Layout.alignment: Qt.AlignHCenter
                    text: day.modelData.count
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }

            HoverHandler { id: hover }
            TapHandler { onTapped: Dashboard.selectDay(day.index) }
        }
    }
}

import QtQuick
import Brindlet

// Seven equal buttons, Monday first: each day's label and how many open tasks it holds.
Row {
    id: root

    // Each of the seven takes an equal share of the width the spacing leaves.
    readonly property real dayWidth: (width - 6 * spacing) / 7

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
            width: root.dayWidth
            height: 58
            radius: Theme.rowRadius
            color: modelData.selected ? Theme.tint(Theme.accent, 0.18)
                                      : Theme.tint(Theme.primary, hover.hovered ? 0.07 : 0.04)
            Accessible.role: Accessible.Button
            Accessible.name: modelData.accessibleName
            Accessible.onPressAction: Dashboard.selectDay(index)

            Column {
                anchors.centerIn: parent
                spacing: 3
                Text {
                    objectName: "weekDayLabel"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: day.modelData.label
                    font.pixelSize: Theme.bodySize
                    font.weight: day.modelData.selected ? Font.DemiBold : Font.Normal
                    color: day.modelData.selected ? Theme.accent : Theme.primary
                }
                Text {
                    objectName: "weekDayCount"
                    anchors.horizontalCenter: parent.horizontalCenter
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

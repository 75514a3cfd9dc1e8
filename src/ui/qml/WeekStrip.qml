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
            readonly property bool selected: Dashboard.selectedWeekDay === index

            objectName: "weekDay." + index
            width: root.dayWidth
            height: 58
            radius: Theme.rowRadius
            color: selected ? Theme.tint(Theme.accent, 0.18)
                            : Theme.tint(Theme.primary, hover.hovered ? 0.07 : 0.04)
            Accessible.role: Accessible.Button
            Accessible.name: Dashboard.weekDayNames[index]
            Accessible.onPressAction: Dashboard.selectDay(index)

            Column {
                anchors.centerIn: parent
                spacing: 3
                Text {
                    objectName: "weekDayLabel"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: Dashboard.weekDayLabels[day.index]
                    font.pixelSize: Theme.bodySize
                    font.weight: day.selected ? Font.DemiBold : Font.Normal
                    color: day.selected ? Theme.accent : Theme.primary
                }
                Text {
                    objectName: "weekDayCount"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: Dashboard.weekDayCounts[day.index]
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }

            HoverHandler { id: hover }
            TapHandler { onTapped: Dashboard.selectDay(day.index) }
        }
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The open work of each day of the week as bars on one baseline. The bars keep their own scale,
// a fifth of a point per minute, so that weeks compare at a glance; a heavy day makes the chart
// taller rather than the others smaller.
FocusCard {
    id: root

    objectName: "workloadChart"

    ColumnLayout {
        width: parent.width
        spacing: 14

        Text {
            text: "Daily workload"
            font.pixelSize: Theme.headlineSize
            font.bold: true
            color: Theme.primary
        }

        Item {
            Layout.fillWidth: true
            implicitHeight: days.implicitHeight

            // The common baseline under every bar.
            Rectangle {
                x: 0
                y: ReviewScreen.workloadHeight
                width: parent.width
                height: 1
                color: Theme.cardOutline
            }

            RowLayout {
                id: days

                width: parent.width
                spacing: 8

                Repeater {
                    model: ReviewScreen.workloadDays
                    delegate: ColumnLayout {
                        id: column

                        required property int index
                        required property var modelData

                        objectName: "workloadDay." + index
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        spacing: 8
                        Accessible.role: Accessible.StaticText
                        Accessible.name: modelData.accessibleName

                        Item {
                            Layout.fillWidth: true
                            implicitHeight: ReviewScreen.workloadHeight

                            Rectangle {
                                objectName: "workloadBar"
                                anchors.bottom: parent.bottom
                                anchors.horizontalCenter: parent.horizontalCenter
                                width: Math.min(44, parent.width * 0.6)
                                height: column.modelData.barHeight
                                radius: Math.min(6, width / 2, height / 2)
                                color: Theme.accent
                                opacity: 0.75
                            }
                        }
                        Text {
                            objectName: "workloadDayLabel"
                            Layout.alignment: Qt.AlignHCenter
                            text: column.modelData.label
                            font.pixelSize: Theme.smallSize
                            color: Theme.secondary
                        }
                    }
                }
            }
        }
    }
}

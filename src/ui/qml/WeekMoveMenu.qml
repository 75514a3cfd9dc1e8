import QtQuick
import QtQuick.Controls
import Brindlet

// The pop-up list of a card's destinations: each day of the week on show, then "Unscheduled".
// A day already holding the task stays in the list; choosing it runs the move all the same.
Menu {
    id: root

    required property string taskId

    topPadding: 5
    bottomPadding: 5
    margins: 8

    contentItem: ListView {
        objectName: "moveMenu"
        implicitHeight: contentHeight
        implicitWidth: 168
        model: root.contentModel
        interactive: false
        clip: true
        currentIndex: root.currentIndex
    }

    background: Rectangle {
        implicitWidth: 168
        radius: Theme.controlRadius + 2
        color: Theme.surface
        border.width: 1
        border.color: Theme.cardOutline

        // A soft edge of shadow below the list.
        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.topMargin: 3
            anchors.bottomMargin: -3
            radius: parent.radius
            color: Theme.tint(Theme.primary, 0.08)
        }
    }

    delegate: MenuItem {
        id: entry

        leftPadding: 12
        rightPadding: 12
        topPadding: 6
        bottomPadding: 6
        font.pixelSize: Theme.bodySize

        contentItem: Text {
            text: entry.text
            font: entry.font
            color: entry.highlighted ? Theme.accent : Theme.primary
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            x: 5
            width: entry.width - 10
            height: entry.height
            radius: Theme.controlRadius - 2
            color: entry.down ? Theme.tint(Theme.accent, 0.18)
                              : entry.highlighted ? Theme.tint(Theme.accent, 0.1) : "transparent"
        }
    }

    Instantiator {
        model: WeekScreen.moveTargets
        delegate: Action {
            required property int index
            required property string modelData

            text: modelData
            onTriggered: WeekScreen.moveTask(root.taskId, index)
        }
        onObjectAdded: (index, object) => root.insertAction(index, object)
        onObjectRemoved: (index, object) => root.removeAction(object)
    }
}

import QtQuick
import Brindlet

// A vertical scroll bar for a flickable, of plain items. While the content is taller than the
// view it appears as the view moves or the pointer comes near, shows where the view is, and its
// handle drags the content along.
Item {
    id: root

    required property Flickable flickable
    readonly property real shownShare: flickable.visibleArea.heightRatio
    readonly property bool active: flickable.moving || near.hovered || drag.active

    implicitWidth: 12
    visible: shownShare < 1
    opacity: active ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: 200 } }

    HoverHandler { id: near }

    Rectangle {
        id: handle
        objectName: "scrollHandle"

        x: root.width - width - 2
        y: root.flickable.visibleArea.yPosition * root.height
        width: drag.active || hover.hovered ? 8 : 5
        height: Math.max(24, root.shownShare * root.height)
        radius: width / 2
        color: Theme.tint(Theme.primary, drag.active ? 0.45 : 0.28)

        HoverHandler { id: hover }
        DragHandler {
            id: drag
            target: null
            xAxis.enabled: false
            property real startY: 0
            onActiveChanged: if (active) startY = root.flickable.contentY
            onTranslationChanged: {
                const view = root.flickable
                const range = view.contentHeight - view.height
                const travel = root.height - handle.height
                if (travel <= 0) return
                view.contentY = Math.max(0, Math.min(range,
                    startY + translation.y * range / travel))
            }
        }
    }
}

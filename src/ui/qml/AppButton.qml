import QtQuick
import Brindlet

// A button of the app's own look: plain, prominent (filled with the accent colour) or
// borderless (no background until the pointer is over it). It is made of plain items, not the
// stock controls, so that the first screen opens without loading them. A button that shows
// only an icon is an IconButton.
ButtonBase {
    id: root

    property string symbol
    property bool prominent: false
    property bool borderless: false
    property bool large: false
    property color tint: prominent ? Theme.accentText : (borderless ? Theme.secondary : Theme.primary)
    property color fill: {
        if (borderless) return Theme.tint(Theme.primary, 0.06)
        if (prominent) return down ? Qt.darker(Theme.accent, 1.15) : Theme.accent
        return down || hovered ? Theme.controlHover : Theme.control
    }
    property color focusOutline: Theme.tint(Theme.accent, 0.5)
    property real leftPadding: borderless ? 4 : (large ? 18 : 12)
    property real rightPadding: leftPadding
    property real topPadding: borderless ? 4 : (large ? 10 : 6)
    property real bottomPadding: topPadding
    property alias font: label.font

    implicitWidth: leftPadding + content.implicitWidth + rightPadding
    implicitHeight: topPadding + content.implicitHeight + bottomPadding

    Rectangle {
        anchors.fill: parent
        visible: !root.borderless || root.hovered
        radius: Theme.controlRadius
        color: root.fill
        opacity: root.enabled ? 1 : 0.6
        border.width: root.visualFocus ? 2 : 0
        border.color: root.focusOutline
    }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 7
        opacity: root.enabled ? 1 : 0.4
        AppIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol.length > 0
            symbol: root.symbol
            size: root.large ? 16 : 14
            color: root.tint
        }
        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.tint
            // Two weights and the body size for every button: each size and weight of text is a
            // font the window has to load before it first shows.
            font.pixelSize: Theme.bodySize
            font.weight: root.prominent ? Font.DemiBold : Font.Normal
        }
    }
}

import QtQuick
import Brindlet
import QtQuick.Controls
import QtQuick.Layouts

// A button of the app's own look: plain, prominent (filled with the accent colour) or
// borderless (no background, for icon buttons inside rows).
Button {
    id: root

    property string symbol
    property bool prominent: false
    property bool borderless: false
    property bool large: false
    property color tint: prominent ? Theme.accentText : (borderless ? Theme.secondary : Theme.primary)

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    leftPadding: borderless ? 4 : (large ? 18 : 12)
    rightPadding: leftPadding
    topPadding: borderless ? 4 : (large ? 10 : 6)
    bottomPadding: topPadding
    font.pixelSize: large ? Theme.bodySize + 1 : Theme.bodySize
    font.weight: prominent ? Font.DemiBold : Font.Medium
    Accessible.name: text

    contentItem: RowLayout {
        spacing: 7
        opacity: root.enabled ? 1 : 0.4
        AppIcon {
            visible: root.symbol.length > 0
            symbol: root.symbol
            size: root.large ? 16 : 14
            color: root.tint
        }
        Text {
            visible: root.text.length > 0
            text: root.text
            font: root.font
            color: root.tint
            Layout.alignment: Qt.AlignVCenter
        }
    }

    background: Rectangle {
        visible: !root.borderless || root.hovered
        radius: Theme.controlRadius
        color: {
            if (root.borderless) return Theme.tint(Theme.primary, 0.06)
            if (root.prominent) return root.down ? Qt.darker(Theme.accent, 1.15) : Theme.accent
            return root.down || root.hovered ? Theme.controlHover : Theme.control
        }
        opacity: root.enabled ? 1 : 0.6
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.tint(Theme.accent, 0.5)
    }
}

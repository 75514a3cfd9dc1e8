import QtQuick
import Brindlet

// A button of the app's own look: plain, prominent (filled with the accent colour) or
// borderless (no background, for icon buttons inside rows). It is made of plain items, not the
// stock controls, so that the first screen opens without loading them. It behaves as a button
// does: a press released inside it clicks, Space and Return click it when it has the keyboard
// focus, and assistive technology sees a button it can press.
Item {
    id: root

    property string text
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
    readonly property alias hovered: hover.hovered
    readonly property bool down: tap.pressed || keyHeld
    // Clicks never take the focus, so a focused button was reached from the keyboard.
    readonly property bool visualFocus: activeFocus
    property bool keyHeld: false

    signal clicked()

    implicitWidth: leftPadding + content.implicitWidth + rightPadding
    implicitHeight: topPadding + content.implicitHeight + bottomPadding
    activeFocusOnTab: true
    font.pixelSize: large ? Theme.bodySize + 1 : Theme.bodySize
    font.weight: prominent ? Font.DemiBold : Font.Medium

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: if (enabled) clicked()

    Keys.onPressed: (event) => {
        if (event.key === Qt.Key_Space && !event.isAutoRepeat) {
            keyHeld = true
            event.accepted = true
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            clicked()
            event.accepted = true
        }
    }
    Keys.onReleased: (event) => {
        if (event.key !== Qt.Key_Space || event.isAutoRepeat || !keyHeld) return
        keyHeld = false
        event.accepted = true
        clicked()
    }
    onActiveFocusChanged: if (!activeFocus) keyHeld = false

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
            visible: root.text.length > 0
            text: root.text
            color: root.tint
        }
    }

    HoverHandler { id: hover }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.clicked()
    }
}

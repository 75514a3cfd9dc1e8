import QtQuick
import Brindlet

// What every button of the app does, whatever it looks like: a press released inside it clicks,
// Space and Return click it when it has the keyboard focus, and assistive technology sees a
// button it can press. The look goes in as children.
Item {
    id: root

    property string text
    readonly property alias hovered: hover.hovered
    readonly property bool down: tap.pressed || keyHeld
    // Clicks never take the focus, so a focused button was reached from the keyboard.
    readonly property bool visualFocus: activeFocus
    property bool keyHeld: false

    signal clicked()

    activeFocusOnTab: true

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

    HoverHandler { id: hover }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.clicked()
    }
}

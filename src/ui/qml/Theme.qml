pragma Singleton
import QtQuick

// The shared looks of every screen: colours, type sizes, spacing, radii and the card decoration.
QtObject {
    readonly property color background: "#f5f6fa"
    readonly property color sidebar: "#eceef4"
    readonly property color surface: "#ffffff"
    readonly property color primary: "#1c2130"
    readonly property color secondary: "#6a7285"
    readonly property color faint: "#a9afbd"
    readonly property color accent: "#4563e6"
    readonly property color accentText: "#ffffff"
    readonly property color red: "#e0454b"
    readonly property color orange: "#ec8a16"
    readonly property color blue: "#3a79e8"
    readonly property color green: "#2fa05a"
    readonly property color grey: "#8c93a3"
    readonly property color control: "#e8ebf2"
    readonly property color controlHover: "#dde1ea"

    // The card decoration: a translucent surface in a rounded rectangle with a faint outline.
    readonly property color cardFill: Qt.rgba(1, 1, 1, 0.82)
    readonly property color cardOutline: Qt.rgba(0.11, 0.13, 0.19, 0.09)
    readonly property color rowFill: Qt.rgba(0.11, 0.13, 0.19, 0.035)

    readonly property int cardRadius: 14
    readonly property int rowRadius: 10
    readonly property int controlRadius: 8
    readonly property int padding: 18
    readonly property int spacing: 12
    readonly property int smallSpacing: 6
    readonly property int contentMaxWidth: 840

    // The type scale. Text is in normal weight, DemiBold where it stands out in a run of body
    // text, and bold in headings: each size and weight is a font the window loads before it
    // first shows, so the scale stays short.
    readonly property int captionSize: 11
    readonly property int smallSize: 12
    readonly property int bodySize: 14
    readonly property int headlineSize: 17
    readonly property int displaySize: 20
    readonly property int titleSize: 28

    function tint(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity)
    }

    function priorityColor(priority: string): color {
        switch (priority) {
        case "critical": return red
        case "high": return orange
        case "normal": return blue
        default: return grey
        }
    }
}

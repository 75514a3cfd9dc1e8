import QtQuick
import QtQuick.Layouts
import Brindlet

// How pairing stands: the headline with its icon, the detail and, during a session, what its
// mode means. Assistive technology reads the card as one element.
FocusCard {
    id: root

    // The lines read as one text, each closed as a sentence unless it closes itself.
    readonly property string spokenText: [DevicesScreen.headline, DevicesScreen.detail,
                                          DevicesScreen.modeMessage]
        .filter(line => line.length > 0)
        .map(line => /[.!?]$/.test(line) ? line : line + ".")
        .join(" ")

    objectName: "devicesStatusCard"
    Accessible.role: Accessible.StaticText
    Accessible.name: spokenText

    ColumnLayout {
        width: parent.width
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            AppIcon {
                objectName: "devicesStatusIcon"
                Layout.alignment: Qt.AlignTop
                Layout.topMargin: 3
                symbol: DevicesScreen.statusSymbol
                size: 18
                // A confirmed or ready phone reads as good news; anything else is still underway.
                color: DevicesScreen.statusSymbol === "iphone.and.arrow.forward" ? Theme.accent
                                                                                 : Theme.green
                Accessible.ignored: true
            }
            Text {
                objectName: "devicesHeadline"
                Layout.fillWidth: true
                text: DevicesScreen.headline
                wrapMode: Text.Wrap
                font.pixelSize: Theme.headlineSize
                font.bold: true
                color: Theme.primary
                Accessible.ignored: true
            }
        }
        Text {
            objectName: "devicesDetail"
            Layout.fillWidth: true
            text: DevicesScreen.detail
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
            Accessible.ignored: true
        }
        Text {
            objectName: "devicesModeMessage"
            Layout.fillWidth: true
            Layout.topMargin: 2
            visible: DevicesScreen.modeMessage.length > 0
            text: DevicesScreen.modeMessage
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallSize
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
}

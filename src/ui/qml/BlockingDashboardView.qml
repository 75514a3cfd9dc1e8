import QtQuick
import QtQuick.Layouts
import Brindlet

// The Blocking destination: the session's setup or running card and the domain editor.
ScreenPage {
    objectName: "blockingView"
    maxWidth: 760

    ScreenTitle {
        Layout.fillWidth: true
        title: BlockingScreen.title
        subtitle: "Protect a task or start a standalone blocking session."
    }

    FocusCard {
        objectName: "blockingCard"
        Layout.fillWidth: true

        BlockingRunningCard {
            width: parent.width
            visible: BlockingScreen.hasSession
        }

        BlockingSetupCard {
            width: parent.width
            visible: !BlockingScreen.hasSession
        }
    }

    DomainEditorView {
        Layout.fillWidth: true
        locked: BlockingScreen.locked
    }

    Text {
        objectName: "privacyLine"
        Layout.fillWidth: true
        text: "No browsing history leaves this Mac."
        wrapMode: Text.Wrap
        font.pixelSize: Theme.smallSize
        color: Theme.secondary
    }
}

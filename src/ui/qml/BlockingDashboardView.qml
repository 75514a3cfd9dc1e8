import QtQuick
import QtQuick.Layouts
import Brindlet

// The Blocking destination: the session's setup or running card and the domain editor.
ScreenPage {
    objectName: "blockingView"

    ScreenTitle {
        Layout.fillWidth: true
        title: "Website Blocking"
    }
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// One blocked domain: a switch that keeps it in or out of the next session, and a bin that
// removes it at once.
Rectangle {
    id: root

    required property string ruleId
    required property string domain
    required property bool isEnabled
    property bool locked: false

    objectName: "domainRow." + domain
    implicitHeight: 44
    radius: Theme.rowRadius
    color: Theme.rowFill

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 6
        spacing: 10

        AppSwitch {
            objectName: "domainSwitch." + root.domain
            Layout.fillWidth: true
            text: root.domain
            font.family: "monospace"
            font.pixelSize: Theme.bodySize - 1
            checked: root.isEnabled
            enabled: !root.locked
            opacity: enabled ? 1 : 0.5
            onToggled: BlockingScreen.setRuleEnabled(root.ruleId, checked)
        }

        IconButton {
            objectName: "removeDomain." + root.domain
            symbol: "trash"
            tint: Theme.red
            enabled: !root.locked
            Accessible.name: "Remove " + root.domain
            onClicked: BlockingScreen.removeRule(root.ruleId)
        }
    }
}

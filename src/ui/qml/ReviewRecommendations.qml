import QtQuick
import QtQuick.Layouts
import Brindlet

// The recommendations waiting for a decision, each with its own pair of buttons and, under
// them all, the pair that decides on every one at once. Nothing changes before an approval.
FocusCard {
    id: root

    objectName: "recommendations"

    ColumnLayout {
        width: parent.width
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.spacing
            Text {
                Layout.fillWidth: true
                text: "Recommendations"
                font.pixelSize: Theme.headlineSize
                font.bold: true
                color: Theme.primary
            }
            AppButton {
                objectName: "generateButton"
                text: "Generate"
                symbol: "sparkles"
                onClicked: ReviewScreen.generateRecommendations()
            }
        }

        Text {
            objectName: "recommendationsEmpty"
            Layout.fillWidth: true
            visible: ReviewScreen.proposals.count === 0
            text: "Generate up to three practical schedule improvements from this week's facts."
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
        }

        Repeater {
            model: ReviewScreen.proposals
            delegate: ReviewProposalRow { Layout.fillWidth: true }
        }

        RowLayout {
            objectName: "decideAll"
            Layout.fillWidth: true
            Layout.topMargin: 4
            visible: ReviewScreen.proposals.count > 0
            spacing: 10
            Item { Layout.fillWidth: true }
            AppButton {
                text: "Dismiss all"
                onClicked: ReviewScreen.dismissAllProposals()
            }
            AppButton {
                text: "Approve all"
                prominent: true
                onClicked: ReviewScreen.approveAllProposals()
            }
        }
    }
}

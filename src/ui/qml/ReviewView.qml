import QtQuick
import QtQuick.Layouts
import Brindlet

// The Review destination: what the chosen week's record says, the work it had left on each day,
// the recommendations waiting for a decision and the tasks finished in it.
ScreenPage {
    objectName: "reviewView"
    maxWidth: 900

    ReviewHeader { Layout.fillWidth: true }
    ReviewMetrics { Layout.fillWidth: true }
    ReviewWorkloadChart { Layout.fillWidth: true }
    ReviewRecommendations { Layout.fillWidth: true }
    ReviewCompletedCard { Layout.fillWidth: true }
}

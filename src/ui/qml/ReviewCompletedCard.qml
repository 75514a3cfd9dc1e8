import QtQuick
import QtQuick.Layouts
import Brindlet

// The tasks finished in the week, earliest first, each with its time in focus.
FocusCard {
    id: root

    objectName: "completedTasks"

    ColumnLayout {
        width: parent.width
        spacing: 8

        Text {
            Layout.bottomMargin: 2
            text: "Completed tasks"
            font.pixelSize: Theme.headlineSize
            font.bold: true
            color: Theme.primary
        }

        Text {
            objectName: "completedEmpty"
            Layout.fillWidth: true
            visible: ReviewScreen.completed.count === 0
            text: "Nothing completed in this week yet."
            wrapMode: Text.Wrap
            font.pixelSize: Theme.bodySize
            color: Theme.secondary
        }

        Repeater {
            model: ReviewScreen.completed
            delegate: RowLayout {
                id: row

                required property string title
                required property string elapsedText

                objectName: "completedRow." + title
                Layout.fillWidth: true
                spacing: 10

                AppIcon {
                    symbol: "checkmark.circle.fill"
                    size: 16
                    color: Theme.green
                }
                Text {
                    objectName: "completedTitle"
                    Layout.fillWidth: true
                    text: row.title
                    elide: Text.ElideRight
                    font.pixelSize: Theme.bodySize
                    color: Theme.primary
                }
                Text {
                    objectName: "completedElapsed"
                    Layout.alignment: Qt.AlignRight
                    horizontalAlignment: Text.AlignRight
                    text: row.elapsedText
                    // Times line up at the right edge: the usual interface fonts set their default figures
                    // at one width.
                    font.pixelSize: Theme.smallSize
                    color: Theme.secondary
                }
            }
        }
    }
}

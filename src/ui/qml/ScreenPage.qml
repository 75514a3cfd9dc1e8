import QtQuick
import QtQuick.Layouts
import Brindlet

// A screen laid out as one column, centred and at most `maxWidth` wide. The screen's parts go in
// as children of the column.
ScreenFrame {
    id: root

    default property alias content: column.data
    property alias spacing: column.spacing

    contentHeight: column.implicitHeight

    ColumnLayout {
        id: column
        x: root.contentX
        y: 30
        width: root.contentWidth
        spacing: 22
    }
}

import QtQuick
import Brindlet
import QtQuick.Controls.impl

// One of the bundled icons by its symbol name, tinted in one colour.
IconImage {
    id: root

    property string symbol
    property int size: 16

    source: symbol.length > 0 ? "qrc:/icons/" + symbol + ".svg" : ""
    sourceSize: Qt.size(size, size)
    width: size
    height: size
    color: Theme.secondary
}

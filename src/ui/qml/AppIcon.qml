import QtQuick
import Brindlet

// One of the bundled icons by its symbol name, tinted in one colour.
SymbolIcon {
    property int size: 16

    implicitWidth: size
    implicitHeight: size
    width: size
    height: size
    color: Theme.secondary
}

import QtQuick
import Brindlet

// One of the bundled icons by its symbol name, tinted in one colour, 16 pixels square unless
// given a size.
SymbolIcon {
    color: Theme.secondary
}

import QtQuick
import QtQuick.Layouts
import Brindlet

// The blocked domains of the selected group, editable unless `locked`.
FocusCard {
    property bool locked: false
}

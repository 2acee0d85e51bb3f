import QtQuick
import Pellar.Controls
import Pellar.Settings

/// The symbol before a row's text; there is none without a name.
SymbolItem {
    anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter }
    width: 17
    height: 17
    color: Look.colors.dimmedText
    visible: name !== ""
}

import QtQuick
import Pellar.Controls

PillControl {
    id: root

    property alias symbol: glyph.name

    SymbolItem {
        id: glyph

        anchors.centerIn: parent
        width: 13
        height: 13
        color: root.pill.colors.text
    }
}

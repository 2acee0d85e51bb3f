import QtQuick
import Pellar.Controls
import Pellar.Settings

/// How something stands, with a symbol before it.
Item {
    id: root

    required property string text
    required property string symbol
    required property color color

    implicitHeight: visible ? line.height : 0
    visible: text !== ""

    SymbolItem {
        y: 1
        width: 14
        height: 14
        name: root.symbol
        color: root.color
        visible: name !== ""
    }
    SmallText {
        id: line

        x: root.symbol === "" ? 0 : 20
        width: parent.width - x
        text: root.text
        color: root.color
    }
}

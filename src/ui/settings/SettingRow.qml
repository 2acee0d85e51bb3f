import QtQuick
import Pellar.Settings

/// A row of a card: what it says, and the controls at its end.
Item {
    id: root

    property alias label: words.label
    property alias note: words.note
    property alias hint: words.hint
    property alias isWarning: words.isWarning
    property string symbol
    default property alias controls: end.data

    /// How much of the row its controls may take beside the text; else they stand below it.
    property real controlShare: 0.42
    readonly property bool isTight: label !== "" && end.width > controlShare * width

    width: parent ? parent.width : 0
    implicitHeight: isTight ? words.height + end.height + 34 : Math.max(46, words.height + 24, end.height + 18)

    Hairline { visible: root.y > 0 }
    RowSymbol { id: glyph; name: root.symbol }
    RowText {
        id: words

        x: glyph.visible ? 44 : 16
        y: root.isTight ? 12 : (root.height - height) / 2
        width: root.width - x - (root.isTight || end.width === 0 ? 16 : end.width + 30)
    }
    Row {
        id: end

        x: root.width - width - 14
        y: root.isTight ? words.y + words.height + 10 : (root.height - height) / 2
        spacing: 8
    }
}

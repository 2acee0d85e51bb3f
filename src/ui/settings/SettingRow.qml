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

    width: parent ? parent.width : 0
    implicitHeight: Math.max(46, words.height + 24, end.height + 18)

    Hairline { visible: root.y > 0 }
    RowSymbol { id: glyph; name: root.symbol }
    RowText {
        id: words

        anchors {
            left: parent.left; leftMargin: glyph.visible ? 44 : 16
            right: end.left; rightMargin: end.width > 0 ? 16 : 0
            verticalCenter: parent.verticalCenter
        }
    }
    Row {
        id: end

        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
        spacing: 8
    }
}

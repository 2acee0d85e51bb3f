import QtQuick
import Pellar.Settings

/// A part of a page: its title, what it is for, and its rows on a card.
Column {
    id: root

    property string title
    property string note
    property string hint
    default property alias rows: card.rows

    width: parent ? parent.width : 0
    spacing: 8

    Column {
        x: 2
        width: parent.width - 4
        spacing: 4
        visible: root.title !== "" || root.note !== ""

        Text {
            width: parent.width
            text: root.title
            color: Look.colors.text
            font { pixelSize: 14; weight: Font.DemiBold }
            wrapMode: Text.Wrap
            visible: text !== ""
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        SmallText { width: parent.width; text: root.note }
        SmallText { width: parent.width; text: root.hint; font.pixelSize: 11 }
    }
    Card {
        id: card

        width: parent.width
        visible: implicitHeight > 0
    }
}

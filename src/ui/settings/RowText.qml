import QtQuick
import Pellar.Settings

/// What a row says: its label, what that does, and what this desktop calls it.
Column {
    id: root

    property string label
    property string note
    property string hint
    property bool isWarning: false

    spacing: 3

    Text {
        width: root.width
        text: root.label
        color: Look.colors.text
        font.pixelSize: 13
        wrapMode: Text.Wrap
        visible: text !== ""
        Accessible.ignored: true
    }
    SmallText {
        width: root.width
        text: root.note
        Accessible.ignored: true
    }
    SmallText {
        width: root.width
        text: root.hint
        font.pixelSize: 11
        color: root.isWarning ? Look.colors.warning : Look.colors.dimmedText
        Accessible.ignored: true
    }
}

import QtQuick
import Pellar.Settings

/// An explanation.
Text {
    color: Look.colors.dimmedText
    font.pixelSize: 12
    lineHeight: 1.12
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    visible: text !== ""

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}

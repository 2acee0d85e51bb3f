import QtQuick
import Pellar.Settings

/// Parts a row from the one above it.
Rectangle {
    anchors { left: parent.left; leftMargin: 16; right: parent.right }
    height: 1
    color: Look.colors.line
}

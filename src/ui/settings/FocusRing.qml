import QtQuick
import Pellar.Settings

/// Around a control that has the keyboard.
Rectangle {
    property real around: 0 ///< radius of the control's corners

    anchors { fill: parent; margins: -3 }
    radius: around + 3
    color: "transparent"
    border { width: 2; color: Look.colors.focus }
}

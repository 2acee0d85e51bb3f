import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

T.ScrollBar {
    id: root

    implicitWidth: 12
    padding: 3
    minimumSize: 0.08
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: Look.colors.text
        opacity: root.pressed ? 0.5 : root.hovered ? 0.4 : 0.22
    }
}

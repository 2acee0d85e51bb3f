import QtQuick
import Pellar.Controls
import Pellar.Pill

/// A part of the pill that does something when it is clicked.
PillPart {
    id: root

    required property PillModel pill
    required property string zone
    required property string label

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: pill.activate(zone)

    RoundedBox {
        anchors { fill: parent; margins: -2 }
        radius: 6
        color: root.pill.pressedZone === root.zone ? root.pill.colors.pressed : root.pill.colors.highlight
        visible: root.pill.hoveredZone === root.zone
    }
}

import QtQuick
import Pellar.Settings

/// A few cases side by side, one of them in force.
ChoiceGroup {
    id: root

    cases: cells
    implicitWidth: cells.count * widest + 4
    implicitHeight: 30

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: Look.colors.well
    }
    Row {
        anchors { fill: parent; margins: 2 }

        Repeater {
            id: cells

            model: root.setting.names
            // qmllint disable unqualified
            delegate: ChoiceCase {
                id: item

                setting: root.setting
                width: (root.width - 4) / cells.count
                height: 26
                implicitWidth: Math.ceil(bold.width) + 30

                Rectangle {
                    anchors.fill: parent
                    radius: 6
                    color: item.isOn ? Look.colors.face : Look.colors.hovered
                    border { width: item.isOn ? 1 : 0; color: Look.colors.faceBorder }
                    visible: item.isOn || item.hovered
                }
                TextMetrics { // of the name as it is when it is in force
                    id: bold

                    text: item.modelData
                    font { pixelSize: 13; weight: Font.DemiBold }
                }
                Text {
                    anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
                    text: item.modelData
                    color: Look.colors.text
                    font { pixelSize: 13; weight: item.isOn ? Font.DemiBold : Font.Normal }
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                FocusRing { around: 6; visible: item.visualFocus }
            }
            // qmllint enable unqualified
        }
    }
}

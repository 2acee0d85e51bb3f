import QtQuick
import Pellar.Settings

/// The pill's themes as swatches of their colour, one of them in force. They stand in as many rows as their names
/// need, with as many in each.
ChoiceGroup {
    id: root

    required property list<color> tints

    cases: cells
    implicitHeight: grid.height

    Grid {
        id: grid

        readonly property int fitting: Math.max(1, Math.floor(root.width / root.widest))

        columns: Math.max(1, Math.ceil(cells.count / Math.ceil(cells.count / fitting)))

        Repeater {
            id: cells

            model: root.setting.names
            // qmllint disable unqualified
            delegate: ChoiceCase {
                id: item

                setting: root.setting
                width: root.width / grid.columns
                implicitWidth: Math.ceil(bold.width) + 8
                implicitHeight: 70

                Rectangle { // around the swatch in force
                    anchors.centerIn: swatch
                    width: 40
                    height: 40
                    radius: 20
                    color: "transparent"
                    border { width: 2; color: item.isOn ? Look.colors.accent : Look.colors.line }
                    visible: item.isOn || item.hovered
                }
                ThemeSwatch {
                    id: swatch

                    anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 8 }
                    tint: root.tints[item.index]
                    isRainbow: item.index === 0
                }
                TextMetrics { // of the name as it is when the theme is in force
                    id: bold

                    text: item.modelData
                    font { pixelSize: 12; weight: Font.DemiBold }
                }
                Text {
                    anchors { top: swatch.bottom; topMargin: 8; left: parent.left; right: parent.right }
                    text: item.modelData
                    color: item.isOn ? Look.colors.text : Look.colors.dimmedText
                    font { pixelSize: 12; weight: item.isOn ? Font.DemiBold : Font.Normal }
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                FocusRing { anchors.margins: 0; around: 8; visible: item.visualFocus }
            }
            // qmllint enable unqualified
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// The pill's themes as swatches of their colour, one of them in force.
FocusScope {
    id: root

    required property ChoiceSetting setting
    required property list<color> tints
    property string label ///< for those who hear it

    implicitHeight: row.height

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function step(by: int) {
        setting.choose(setting.index + by)
        cells.itemAt(setting.index).forceActiveFocus(Qt.TabFocusReason)
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Row {
        id: row

        width: parent.width

        Repeater {
            id: cells

            model: root.setting.names
            // qmllint disable unqualified
            delegate: T.RadioButton {
                id: item

                required property string modelData
                required property int index
                readonly property bool isOn: root.setting.index === index

                width: root.width / cells.count
                implicitHeight: 70
                hoverEnabled: true
                focusPolicy: isOn ? Qt.TabFocus : Qt.NoFocus
                focus: isOn
                checked: isOn
                onClicked: {
                    root.setting.choose(index)
                    checked = Qt.binding(() => isOn)
                }

                Accessible.name: modelData
                Accessible.onToggleAction: root.setting.choose(index)
                Accessible.onPressAction: root.setting.choose(index)

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

import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// The pill's themes as swatches of their colour, one of them in force. They stand in as many rows as their names
/// need, with as many in each.
FocusScope {
    id: root

    required property ChoiceSetting setting
    required property list<color> tints
    property string label ///< for those who hear it
    readonly property real widest: {
        let widest = 1
        for (let i = 0; i < cells.count; ++i)
            widest = Math.max(widest, cells.itemAt(i)?.implicitWidth ?? 0)
        return widest
    }

    implicitHeight: grid.height

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function step(by: int) {
        setting.choose(setting.index + by)
        cells.itemAt(setting.index).forceActiveFocus(Qt.TabFocusReason)
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Grid {
        id: grid

        readonly property int fitting: Math.max(1, Math.floor(root.width / root.widest))

        columns: Math.max(1, Math.ceil(cells.count / Math.ceil(cells.count / fitting)))

        Repeater {
            id: cells

            model: root.setting.names
            // qmllint disable unqualified
            delegate: T.AbstractButton { // Qt 6.4 leaks a T.RadioButton that a screen reader hears
                id: item

                required property string modelData
                required property int index
                readonly property bool isOn: root.setting.index === index

                width: root.width / grid.columns
                implicitWidth: Math.ceil(bold.width) + 8
                implicitHeight: 70
                hoverEnabled: true
                focusPolicy: isOn ? Qt.TabFocus : Qt.NoFocus
                focus: isOn
                checkable: true
                autoExclusive: true
                checked: isOn
                onClicked: {
                    root.setting.choose(index)
                    checked = Qt.binding(() => isOn)
                }

                Accessible.role: Accessible.RadioButton
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

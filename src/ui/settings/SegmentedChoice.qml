import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// A few cases side by side, one of them in force.
FocusScope {
    id: root

    required property ChoiceSetting setting
    property string label ///< for those who hear it
    readonly property real cell: {
        let widest = 0
        for (let i = 0; i < cells.count; ++i)
            widest = Math.max(widest, cells.itemAt(i)?.implicitWidth ?? 0)
        return widest
    }

    implicitWidth: cells.count * cell + 4
    implicitHeight: 30

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function step(by: int) {
        setting.choose(setting.index + by)
        cells.itemAt(setting.index).forceActiveFocus(Qt.TabFocusReason)
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

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
            delegate: T.AbstractButton { // Qt 6.4 leaks a T.RadioButton that a screen reader hears
                id: item

                required property string modelData
                required property int index
                readonly property bool isOn: root.setting.index === index

                width: (root.width - 4) / cells.count
                height: 26
                implicitWidth: Math.ceil(widest.width) + 30
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

                Rectangle {
                    anchors.fill: parent
                    radius: 6
                    color: item.isOn ? Look.colors.face : Look.colors.hovered
                    border { width: item.isOn ? 1 : 0; color: Look.colors.faceBorder }
                    visible: item.isOn || item.hovered
                }
                TextMetrics { // of the name as it is when it is in force
                    id: widest

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

import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// A row of a card with a switch. It shows what it is told, and asks for the other when it is clicked.
T.AbstractButton {
    id: root

    property alias label: words.label
    property alias note: words.note
    property alias hint: words.hint
    property string symbol
    property bool isOn: false

    signal switched(bool on)

    width: parent ? parent.width : 0
    implicitHeight: Math.max(46, words.height + 24)
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45
    checkable: true
    checked: isOn
    onToggled: {
        checked = Qt.binding(() => isOn) // whatever comes of it
        switched(!isOn)
    }

    Accessible.name: label
    Accessible.description: note
    Accessible.onToggleAction: if (enabled) switched(!isOn)
    Accessible.onPressAction: if (enabled) switched(!isOn)
    Keys.onReturnPressed: switched(!isOn)
    Keys.onEnterPressed: switched(!isOn)

    Hairline { visible: root.y > 0 }
    RowSymbol { id: glyph; name: root.symbol }
    RowText {
        id: words

        anchors {
            left: parent.left; leftMargin: glyph.visible ? 44 : 16
            right: track.left; rightMargin: 16
            verticalCenter: parent.verticalCenter
        }
    }
    Rectangle {
        id: track

        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
        width: 38
        height: 22
        radius: 11
        color: root.isOn ? Look.colors.accent : Look.colors.track

        Behavior on color { ColorAnimation { duration: 120 } }

        Rectangle {
            x: root.isOn ? parent.width - width - 2 : 2
            y: 2
            width: 18
            height: 18
            radius: 9
            color: root.down ? "#f0f0f2" : "#ffffff"

            Behavior on x { NumberAnimation { duration: 120; easing.type: Easing.OutCubic } }
        }
        FocusRing { around: 11; visible: root.visualFocus }
    }
}

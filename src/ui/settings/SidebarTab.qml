import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// A tab at the side of the settings window.
T.AbstractButton { // Qt 6.4 leaks a T.TabButton that a screen reader hears
    id: root

    required property string symbol
    required property color tint
    required property bool isCurrent

    implicitWidth: Math.ceil(widest.width) + 58
    implicitHeight: 38
    hoverEnabled: true
    focusPolicy: isCurrent ? Qt.TabFocus : Qt.NoFocus

    checkable: true
    autoExclusive: true
    checked: isCurrent

    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isCurrent
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: root.isCurrent ? Look.colors.pressed : Look.colors.hovered
        visible: root.isCurrent || root.hovered
    }
    SymbolTile {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 24
        height: 24
        symbol: root.symbol
        tint: root.tint
    }
    TextMetrics { // of the text as it is when the tab is the current one
        id: widest

        text: root.text
        font { pixelSize: 13; weight: Font.DemiBold }
    }
    Text {
        anchors { left: parent.left; leftMargin: 42; right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        text: root.text
        color: Look.colors.text
        font { pixelSize: 13; weight: root.isCurrent ? Font.DemiBold : Font.Normal }
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    FocusRing { anchors.margins: 0; around: 5; visible: root.visualFocus }
}

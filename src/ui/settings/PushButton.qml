import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// A button with a text. The one that is meant to be pressed is in the accent's colour.
T.Button {
    id: root

    property bool isProminent: false
    property string spokenName: text ///< for those who hear it, where the text alone does not say enough

    implicitWidth: Math.max(64, implicitContentWidth + 28)
    implicitHeight: 28
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45

    Accessible.name: spokenName
    Accessible.onPressAction: if (enabled) clicked()
    Accessible.onToggleAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: 7
        color: !root.isProminent ? Look.colors.face : root.down ? Look.colors.accentPressed : Look.colors.accent
        border { width: root.isProminent ? 0 : 1; color: Look.colors.faceBorder }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: root.down ? Look.colors.pressed : Look.colors.hovered
            visible: root.down || root.hovered
        }
        FocusRing { around: 7; visible: root.visualFocus }
    }
    contentItem: Text {
        text: root.text
        color: root.isProminent ? Look.colors.accentText : Look.colors.text
        font { pixelSize: 13; weight: root.isProminent ? Font.DemiBold : Font.Normal }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}

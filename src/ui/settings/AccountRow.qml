import QtQuick
import Pellar.Settings

/// A row with an account: what it is for, how it stands, and the button that changes that.
Item {
    id: root

    required property string symbol
    required property color tint
    required property string name
    property string note
    property string status
    property string fault
    property string action
    property bool isConnected: false

    signal acted

    width: parent ? parent.width : 0
    implicitHeight: Math.max(64, words.height + 28)

    SymbolTile {
        x: 14
        y: 14
        width: 36
        height: 36
        symbol: root.symbol
        tint: root.tint
    }
    Column {
        id: words

        anchors {
            left: parent.left; leftMargin: 64
            right: button.left; rightMargin: 16
            verticalCenter: parent.verticalCenter
        }
        spacing: 4

        Text {
            width: parent.width
            text: root.name
            color: Look.colors.text
            font { pixelSize: 13; weight: Font.DemiBold }
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        SmallText { width: parent.width; text: root.note }
        StatusLine {
            width: parent.width
            text: root.status
            symbol: root.isConnected ? "checkmark.circle.fill" : ""
            color: root.isConnected ? Look.colors.good : Look.colors.dimmedText
        }
        StatusLine {
            width: parent.width
            text: root.fault
            symbol: "exclamationmark.circle"
            color: Look.colors.warning
        }
    }
    PushButton {
        id: button

        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
        text: root.action
        spokenName: root.action.includes(root.name) ? root.action : qsTr("%1: %2").arg(root.name).arg(root.action)
        isProminent: !root.isConnected
        visible: text !== ""
        width: visible ? implicitWidth : 0
        onClicked: root.acted()
    }
}

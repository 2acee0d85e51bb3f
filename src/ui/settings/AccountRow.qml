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

    /// Whether the button leaves the text too little room beside it, and so stands below it.
    readonly property bool isTight: button.width > 0.4 * width

    signal acted

    width: parent ? parent.width : 0
    implicitHeight: isTight ? words.height + button.height + 40 : Math.max(64, words.height + 28)

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

        x: 64
        y: root.isTight ? 14 : (root.height - height) / 2
        width: root.width - x - (root.isTight || button.width === 0 ? 16 : button.width + 30)
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

        x: root.width - width - 14
        y: root.isTight ? words.y + words.height + 12 : (root.height - height) / 2
        text: root.action
        spokenName: root.action.includes(root.name) ? root.action : qsTr("%1: %2").arg(root.name).arg(root.action)
        isProminent: !root.isConnected
        visible: text !== ""
        width: visible ? implicitWidth : 0
        onClicked: root.acted()
    }
}

import QtQuick
import Pellar.Settings

/// A row with the hot key of an action.
SettingRow {
    id: root

    required property ShortcutSetting setting

    label: setting.name
    hint: setting.note
    isWarning: true
    controlShare: 0.65

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(96, chord.implicitWidth + 20)
        height: 26
        radius: 6
        color: Look.colors.well
        border { width: root.setting.isRecording ? 2 : 0; color: Look.colors.focus }

        Text {
            id: chord

            anchors.centerIn: parent
            text: root.setting.display
            color: root.setting.isBound && !root.setting.isRecording ? Look.colors.text : Look.colors.dimmedText
            font.pixelSize: 13
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.description: root.setting.note
        }
    }
    PushButton {
        anchors.verticalCenter: parent.verticalCenter
        text: root.setting.isRecording ? qsTr("Cancel") : qsTr("Change")
        spokenName: qsTr("%1: %2").arg(root.setting.name).arg(text)
        onClicked: root.setting.change()
    }
    PushButton {
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Disable")
        spokenName: qsTr("%1: %2").arg(root.setting.name).arg(text)
        enabled: root.setting.isBound
        onClicked: root.setting.disable()
    }
}

import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings

    title: settings.tabNames[4]

    Section {
        Item {
            width: parent.width
            height: content.height + 44

            Column {
                id: content

                anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 22 }
                spacing: 6

                AppIcon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 84
                    height: 84
                }
                Text {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Pellar")
                    color: Look.colors.text
                    font { pixelSize: 22; weight: Font.Bold }
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                SmallText {
                    width: parent.width
                    text: qsTr("A glass-style music controller\nfor your menu bar.")
                    font.pixelSize: 13
                    horizontalAlignment: Text.AlignHCenter
                }
                SmallText {
                    width: parent.width
                    text: qsTr("Version %1").arg(root.settings.version)
                    horizontalAlignment: Text.AlignHCenter
                }
            }
        }
    }
    Section {
        title: qsTr("System Permissions")

        SettingRow {
            label: qsTr("Permissions")
            note: qsTr("Re-run the onboarding flow if Pellar ever loses access to AppleScript or the microphone (used for live audio capture).")
            hint: qsTr("On this desktop: access to the players on the session bus, and to PipeWire.")

            PushButton {
                text: qsTr("Setup Permissions…")
                onClicked: root.settings.setUpPermissions()
            }
        }
    }
}

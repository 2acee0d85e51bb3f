import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings
    readonly property UpdaterManager updater: settings.updater

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
                Row {
                    anchors.horizontalCenter: parent.horizontalCenter
                    topPadding: 8
                    spacing: 8
                    visible: root.settings.webSite !== "" || root.settings.support !== ""

                    PushButton {
                        text: qsTr("Website")
                        visible: root.settings.webSite !== ""
                        onClicked: root.settings.open(root.settings.webSite)
                    }
                    PushButton {
                        text: qsTr("Contact Support")
                        visible: root.settings.support !== ""
                        onClicked: root.settings.open(root.settings.support)
                    }
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
    Section {
        title: qsTr("Updates")

        SettingRow {
            label: qsTr("Software updates")
            note: qsTr("Pellar uses Sparkle to deliver new versions safely. Builds are signed and notarized by Apple before they reach you.")
            hint: root.updater.isAvailable
                  ? qsTr("On this desktop the package's own signature is checked, and your package installer installs it.")
                  : qsTr("This build has no address of updates: your system's packages bring new versions.")

            PushButton {
                text: qsTr("Check for Updates…")
                enabled: root.updater.isAvailable
                onClicked: root.updater.checkForUpdates()
            }
        }
        SwitchRow {
            label: qsTr("Check for updates automatically")
            enabled: root.updater.isAvailable
            isOn: root.updater.automaticChecksEnabled
            onSwitched: (on) => root.updater.automaticChecksEnabled = on
        }
    }
}

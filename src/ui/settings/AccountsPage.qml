import QtQuick
import Pellar.Settings

SettingsPage {
    required property SettingsModel settings

    title: settings.tabNames[3]
    subtitle: qsTr("Connect streaming services for richer playback metadata.")
}

import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings
    readonly property LaunchAtLogin launch: settings.launch
    readonly property AnalyticsManager analytics: settings.analytics
    readonly property bool isInFront: Window.active

    title: settings.tabNames[2]
    subtitle: qsTr("Launch behavior, audio analysis, and privacy preferences.")
    onIsInFrontChanged: if (isInFront) launch.refresh()

    Section {
        title: qsTr("Startup")

        SwitchRow {
            label: qsTr("Launch at login")
            note: qsTr("Set Pellar to start automatically whenever you log in. Uses Apple's official ServiceManagement framework — no Login Items hack.")
            hint: qsTr("On this desktop it is an entry of the autostart folder, which your desktop's own settings show, too.")
            isOn: root.launch.isEnabled
            onSwitched: (on) => root.launch.isEnabled = on
        }
    }
    Section {
        title: qsTr("Audio Analysis")

        SwitchRow {
            label: qsTr("Live audio capture")
            note: qsTr("Powers the live visualizer when system audio is the active source. Off by default in the menu bar pill (that's a separate Customization toggle); this controls the underlying audio-capture engine, which uses the microphone permission.")
            hint: qsTr("On this desktop PipeWire lends the sound that other programs play; no microphone is opened.")
            isOn: root.settings.isCaptureEnabled
            onSwitched: (on) => root.settings.setCaptureEnabled(on)
        }
    }
    Section {
        title: qsTr("Privacy")

        SwitchRow {
            label: qsTr("Send anonymous usage data")
            note: qsTr("Anonymous usage data helps us prioritize bug fixes and improvements. No personal info, no listening history — only install / launch / crash counts.")
            hint: root.settings.hasUsagePing ? "" : qsTr("This build has no address to send it to: nothing is sent.")
            isOn: !root.analytics.isOptedOut
            onSwitched: (on) => root.analytics.isOptedOut = !on
        }
    }
    Section {
        title: qsTr("Keyboard Shortcuts")
        note: qsTr("Click Change to record a new chord. Hold at least one modifier (⌘ ⌥ ⌃ ⇧) plus a key. Press Esc to cancel mid-recording. Disable a shortcut to free its chord for other apps.")
        hint: qsTr("On this keyboard ⌘ is Super, ⌥ is Alt, and ⌃ is Ctrl.")

        Repeater {
            model: root.settings.shortcuts
            delegate: ShortcutRow {
                required property ShortcutSetting modelData

                setting: modelData
            }
        }
        SettingRow {
            PushButton {
                text: qsTr("Reset to Defaults")
                onClicked: root.settings.resetShortcuts()
            }
        }
    }
}

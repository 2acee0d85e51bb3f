import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings

    title: settings.tabNames[2]
    subtitle: qsTr("Launch behavior, audio analysis, and privacy preferences.")

    Section {
        title: qsTr("Audio Analysis")

        SwitchRow {
            symbol: "waveform"
            label: qsTr("Live audio capture")
            note: qsTr("Powers the live visualizer when system audio is the active source. Off by default in the menu bar pill (that's a separate Customization toggle); this controls the underlying audio-capture engine, which uses the microphone permission.")
            hint: qsTr("On this desktop PipeWire lends the sound that other programs play; no microphone is opened.")
            isOn: root.settings.isCaptureEnabled
            onSwitched: (on) => root.settings.setCaptureEnabled(on)
        }
    }
}

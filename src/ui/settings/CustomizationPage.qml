import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings
    readonly property PillVisibilityManager pill: settings.pill
    readonly property MenuVisibilityManager menu: settings.menu

    title: settings.tabNames[0]
    subtitle: qsTr("Tailor what shows up in the menu bar and how Pellar looks.")

    Section {
        title: qsTr("Menu Bar Elements")
        note: qsTr("Choose which elements appear in your menu bar. The visualizer also turns off the underlying live audio analysis when disabled. The play / pause button stays — every other element is optional. The pill shrinks automatically when items are hidden.")

        SwitchRow {
            label: qsTr("Album art")
            isOn: root.pill.showAlbumArt
            onSwitched: (on) => root.pill.showAlbumArt = on
        }
        SwitchRow {
            label: qsTr("Visualizer")
            isOn: root.pill.showVisualizer
            onSwitched: (on) => root.pill.showVisualizer = on
        }
        SwitchRow {
            label: qsTr("Track title")
            isOn: root.pill.showTitle
            onSwitched: (on) => root.pill.showTitle = on
        }
        SwitchRow {
            label: qsTr("Previous track button")
            isOn: root.pill.showPrevButton
            onSwitched: (on) => root.pill.showPrevButton = on
        }
        SwitchRow {
            label: qsTr("Next track button")
            isOn: root.pill.showNextButton
            onSwitched: (on) => root.pill.showNextButton = on
        }
    }
    Section {
        title: qsTr("Appearance")

        SettingRow {
            symbol: "circle.lefthalf.filled"
            label: qsTr("Theme")
            note: qsTr("Sets the pill's color treatment. \"Album art\" extracts a tint from the currently-playing artwork.")
        }
        Item {
            width: parent.width
            height: themes.height + 10

            ThemePicker {
                id: themes

                x: 12
                width: parent.width - 24
                label: qsTr("Theme")
                setting: root.settings.theme
                tints: root.settings.themeTints
            }
        }
    }
    Section {
        title: qsTr("Right-Click Menu")
        note: qsTr("Hide sections you don't use. The core transport actions, Settings, About, and Quit stay regardless of these toggles.")

        SwitchRow {
            label: qsTr("Up Next")
            isOn: root.menu.showUpNext
            onSwitched: (on) => root.menu.showUpNext = on
        }
        SwitchRow {
            label: qsTr("Love / Suggest Less")
            isOn: root.menu.showReactions
            onSwitched: (on) => root.menu.showReactions = on
        }
        SwitchRow {
            label: qsTr("Power Mode")
            isOn: root.menu.showPowerMode
            onSwitched: (on) => root.menu.showPowerMode = on
        }
        SwitchRow {
            label: qsTr("Audio Sources")
            isOn: root.menu.showAudioSources
            onSwitched: (on) => root.menu.showAudioSources = on
        }
        SwitchRow {
            label: qsTr("Listening Stats")
            isOn: root.menu.showListeningStats
            onSwitched: (on) => root.menu.showListeningStats = on
        }
        SwitchRow {
            label: qsTr("Recently Played")
            isOn: root.menu.showRecentlyPlayed
            onSwitched: (on) => root.menu.showRecentlyPlayed = on
        }
    }
    Section {
        SettingRow {
            label: qsTr("Right-Click Menu Style")
            note: qsTr("Classic uses macOS's native menu. Liquid Glass uses Pellar's custom translucent panel.")
            hint: qsTr("On this desktop Classic is a plain menu of Pellar's own.")
            controlShare: 0.5

            SegmentedChoice {
                label: qsTr("Right-Click Menu Style")
                setting: root.settings.menuStyle
            }
        }
    }
}

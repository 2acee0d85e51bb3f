import QtQuick
import Pellar.Settings

SettingsPage {
    id: root

    required property SettingsModel settings
    readonly property WidgetManager widget: settings.widget

    title: settings.tabNames[1]
    subtitle: qsTr("An always-on floating window with the same info as the preview, customizable to your taste.")

    Section {
        SwitchRow {
            symbol: "square.stack.3d.up"
            label: qsTr("Show floating widget")
            note: qsTr("When on, a small floating window appears wherever you last placed it. Click and drag anywhere on the widget to move it. Click the × that appears on hover (or come back here) to hide it.")
            isOn: root.widget.isEnabled
            onSwitched: (on) => root.widget.isEnabled = on
        }
    }
    Section {
        title: qsTr("Elements")
        note: qsTr("Pick which elements appear inside the widget. The widget resizes to fit only what's visible — turn things off to make it more compact.")

        SwitchRow {
            label: qsTr("Artwork")
            isOn: root.widget.showArtwork
            onSwitched: (on) => root.widget.showArtwork = on
        }
        SwitchRow {
            label: qsTr("Title")
            isOn: root.widget.showTitle
            onSwitched: (on) => root.widget.showTitle = on
        }
        SwitchRow {
            label: qsTr("Artist")
            isOn: root.widget.showArtist
            onSwitched: (on) => root.widget.showArtist = on
        }
        SwitchRow {
            label: qsTr("Progress bar + timestamps")
            isOn: root.widget.showProgress
            onSwitched: (on) => root.widget.showProgress = on
        }
        SwitchRow {
            label: qsTr("Transport buttons")
            isOn: root.widget.showTransport
            onSwitched: (on) => root.widget.showTransport = on
        }
        SwitchRow {
            label: qsTr("Current lyric line")
            isOn: root.widget.showLyric
            onSwitched: (on) => root.widget.showLyric = on
        }
    }
    Section {
        title: qsTr("Placement")

        SwitchRow {
            label: qsTr("Always on top")
            isOn: root.widget.alwaysOnTop
            onSwitched: (on) => root.widget.alwaysOnTop = on
        }
        SettingRow {
            label: qsTr("Reset position")
            note: qsTr("Drop the widget back into the top-right corner of your main screen. Useful if you ever lose it off the edge of a disconnected display.")
            hint: qsTr("Position is remembered between launches.")

            PushButton {
                text: qsTr("Reset Position")
                onClicked: root.widget.resetPosition()
            }
        }
    }
}

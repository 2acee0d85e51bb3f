import QtQuick
import Pellar.Controls
import Pellar.Settings

/// The power mode window.
Rectangle {
    id: root

    required property PowerModeModel model

    color: Look.colors.background

    SettingsPage {
        anchors.fill: parent
        title: qsTr("Power Modes")
        subtitle: qsTr("Tune Pellar's energy use. The active mode is enforced; the others let you preview and edit settings.")

        Column {
            width: parent.width
            spacing: 10

            Rectangle {
                width: parent.width
                height: warning.height + 20
                radius: 10
                color: Qt.alpha(Look.colors.warning, 0.13)
                visible: root.model.isSystemLowPower

                SymbolItem {
                    x: 14
                    anchors.verticalCenter: parent.verticalCenter
                    width: 17
                    height: 17
                    name: "bolt.fill"
                    color: Look.colors.warning
                }
                Column {
                    id: warning

                    anchors { left: parent.left; leftMargin: 42; right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
                    spacing: 2

                    SmallText {
                        width: parent.width
                        text: qsTr("macOS Low Power Mode is on — Low Power is being enforced.")
                        color: Look.colors.text
                    }
                    SmallText {
                        width: parent.width
                        text: qsTr("On this desktop: the power profile “Power Saver”.")
                        font.pixelSize: 11
                    }
                }
            }
            SegmentedChoice {
                width: parent.width
                label: qsTr("Power Mode")
                setting: root.model.mode
            }
            SmallText {
                x: 2
                width: parent.width - 4
                text: root.model.mode.index === root.model.effectiveMode
                      ? qsTr("%1 This mode is active.").arg(root.model.summary) : root.model.summary
            }
        }
        Section {
            SwitchRow {
                label: qsTr("Visualizer")
                note: qsTr("Render the four bars in the menu bar widget.")
                isOn: root.model.isVisualizerEnabled
                onSwitched: (on) => root.model.setVisualizerEnabled(on)
            }
            SettingRow {
                label: qsTr("Visualizer refresh rate")
                note: qsTr("Higher = smoother bars. Lower = less energy.")

                PopupChoice {
                    label: qsTr("Visualizer refresh rate")
                    setting: root.model.visualizerRate
                    enabled: root.model.isVisualizerEnabled
                }
            }
            SettingRow {
                label: qsTr("Drift refresh interval")
                note: qsTr("How often Pellar double-checks Music/Spotify for missed updates.")

                PopupChoice {
                    label: qsTr("Drift refresh interval")
                    setting: root.model.driftRefresh
                }
            }
        }
        Item {
            width: parent.width
            height: 28

            PushButton {
                anchors.right: parent.right
                text: qsTr("Reset to Defaults")
                onClicked: root.model.resetToDefaults()
            }
        }
    }
}

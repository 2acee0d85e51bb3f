import QtQuick
import Pellar.Settings

/// The settings window: its tabs at the side, and the page of the open one.
Rectangle {
    id: root

    required property SettingsModel model

    color: Look.colors.background

    Rectangle {
        id: side

        anchors { top: parent.top; bottom: parent.bottom; left: parent.left }
        width: tabs.widest + 24
        color: Look.colors.sidebar

        Rectangle {
            anchors { top: parent.top; bottom: parent.bottom; right: parent.right }
            width: 1
            color: Look.colors.line
        }
        Row {
            id: head

            x: 20
            y: 22
            spacing: 10

            AppIcon { width: 32; height: 32 }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Pellar")
                color: Look.colors.text
                font { pixelSize: 16; weight: Font.Bold }
                Accessible.ignored: true
            }
        }
        FocusScope {
            id: tabs

            readonly property real widest: {
                let widest = 184
                for (let i = 0; i < items.count; ++i)
                    widest = Math.max(widest, items.itemAt(i)?.implicitWidth ?? 0)
                return widest
            }

            function go(to: int) {
                const tab = Math.max(0, Math.min(items.count - 1, to))
                items.itemAt(tab).forceActiveFocus(Qt.TabFocusReason) // first: Tab would go on stopping at the other
                root.model.tab = tab
            }

            x: 12
            anchors { top: head.bottom; topMargin: 20 }
            width: widest
            height: list.height
            focus: true

            Accessible.role: Accessible.PageTabList
            Accessible.name: qsTr("Settings")
            Keys.onUpPressed: go(root.model.tab - 1)
            Keys.onDownPressed: go(root.model.tab + 1)

            Column {
                id: list

                width: parent.width
                spacing: 2

                Repeater {
                    id: items

                    model: [
                        { symbol: "slider.horizontal.3", tint: "#9e6bd9" },
                        { symbol: "square.stack.3d.up", tint: "#4d9ed9" },
                        { symbol: "gearshape", tint: "#85868f" },
                        { symbol: "person.crop.circle", tint: "#3fa46a" },
                        { symbol: "info.circle", tint: "#d97a4d" }
                    ]
                    // qmllint disable unqualified
                    delegate: SidebarTab {
                        required property var modelData
                        required property int index

                        width: list.width
                        text: root.model.tabNames[index]
                        symbol: modelData.symbol
                        tint: modelData.tint
                        isCurrent: root.model.tab === index
                        focus: isCurrent
                        onClicked: {
                            root.model.tab = index
                            checked = Qt.binding(() => isCurrent)
                        }
                    }
                    // qmllint enable unqualified
                }
            }
        }
    }
    Loader {
        anchors { top: parent.top; bottom: parent.bottom; left: side.right; right: parent.right }
        sourceComponent: [customization, widget, general, accounts, about][root.model.tab]
    }

    // qmllint disable unqualified
    Component { id: customization; CustomizationPage { settings: root.model } }
    Component { id: widget; WidgetPage { settings: root.model } }
    Component { id: general; GeneralPage { settings: root.model } }
    Component { id: accounts; AccountsPage { settings: root.model } }
    Component { id: about; AboutPage { settings: root.model } }
    // qmllint enable unqualified
}

import QtQuick
import Pellar.Controls
import Pellar.Menu

Item {
    id: root

    required property PellarMenuModel menu

    Accessible.role: Accessible.PopupMenu
    Accessible.name: qsTr("Pellar")

    GlassPane {
        anchors.fill: parent
        colors: root.menu.colors.glass
        shadowExtent: root.menu.shadowExtent
        radius: root.menu.cornerRadius
    }
    Item {
        id: list

        anchors { fill: parent; margins: root.menu.shadowExtent + 1 }
        clip: true

        Item {
            x: -1
            y: -1 - root.menu.scroll

            RoundedBox {
                x: root.menu.expandedFrame.x
                y: root.menu.expandedFrame.y
                width: root.menu.expandedFrame.width
                height: root.menu.expandedFrame.height
                radius: 8
                color: root.menu.colors.expanded
                visible: height > 0
            }
            Repeater {
                model: root.menu.rows
                delegate: MenuRow {}
            }
        }
    }
    Rectangle { // how much of the list can be seen
        readonly property real way: list.height - 2 * root.menu.cornerRadius

        anchors { right: list.right; rightMargin: 2 }
        y: list.y + root.menu.cornerRadius + (way - height) * root.menu.scrollShare
        width: 3
        height: way * root.menu.visibleShare
        radius: 1.5
        color: root.menu.colors.pressed
        visible: root.menu.visibleShare < 1
    }

    component MenuRow: Item {
        id: row

        required property var modelData
        readonly property color ink: modelData.isInfo ? root.menu.colors.dimmedText : root.menu.colors.text

        x: modelData.frame.x
        y: modelData.frame.y
        width: modelData.frame.width
        height: modelData.frame.height

        Accessible.role: modelData.isSeparator ? Accessible.Separator
                       : modelData.isHeader || modelData.isInfo ? Accessible.StaticText : Accessible.MenuItem
        Accessible.name: modelData.title
        Accessible.checkable: modelData.isToggle
        Accessible.checked: modelData.isOn
        Accessible.onPressAction: root.menu.choose(modelData.key)

        RoundedBox {
            anchors.fill: parent
            radius: 8
            color: root.menu.pressedKey === row.modelData.key ? root.menu.colors.pressed
                 : root.menu.hoveredKey === row.modelData.key ? root.menu.colors.hovered : "transparent"
        }
        RoundedBox {
            x: row.modelData.checkFrame.x
            width: parent.width - x - 8
            y: Math.floor(parent.height / 2)
            height: 1
            color: root.menu.colors.separator
            visible: row.modelData.isSeparator
        }
        RowSymbol {
            frame: row.modelData.checkFrame
            name: "checkmark"
            color: row.ink
            visible: row.modelData.isToggle && row.modelData.isOn
        }
        RowSymbol {
            frame: row.modelData.symbolFrame
            name: row.modelData.symbol
            color: row.ink
            visible: name !== ""
        }
        RowText {
            frame: row.modelData.titleFrame
            text: row.modelData.title
            color: row.ink
            font.bold: row.modelData.isHeader
        }
        RowText {
            frame: row.modelData.trailingFrame
            text: row.modelData.shortcut
            color: root.menu.colors.dimmedText
        }
        RowSymbol {
            frame: row.modelData.trailingFrame
            name: "chevron.right"
            color: root.menu.colors.dimmedText
            rotation: row.modelData.isExpanded ? 90 : 0
            visible: row.modelData.isSubmenu
        }
    }

    component RowText: Text {
        required property rect frame

        x: frame.x
        width: frame.width
        height: frame.height
        visible: text !== ""
        textFormat: Text.PlainText
        maximumLineCount: 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        font.family: root.menu.font.family
        font.pixelSize: root.menu.font.pixelSize
    }

    component RowSymbol: SymbolItem {
        required property rect frame

        x: frame.x
        y: frame.y
        width: frame.width
        height: frame.height
    }
}

import QtQuick
import Pellar.Controls
import Pellar.Menu
import Pellar.Panel

PanelView {
    id: root

    required property PellarMenuModel menu

    implicitWidth: menu.size.width
    implicitHeight: menu.size.height

    Accessible.role: Accessible.PopupMenu
    Accessible.name: qsTr("Pellar")

    ListView {
        id: list

        readonly property point pointer: hover.point.scenePosition
        /// Whether the pointer says which row is the current one. After a key it does so when it moves again.
        property bool isPointed: true

        anchors { fill: parent; margins: 1 } // the border of the glass
        clip: true
        focus: true
        interactive: false
        model: root.menu
        currentIndex: root.menu.currentRow
        highlightFollowsCurrentItem: false
        displayMarginBeginning: root.menu.size.height // all rows exist, for screen readers
        displayMarginEnd: root.menu.size.height
        // A component sees the ids around it; the pragma that tells qmllint so comes with Qt 6.5.
        // qmllint disable unqualified
        header: Item { height: root.menu.padding - 1 }
        footer: Item { height: root.menu.padding - 1 }
        delegate: MenuRowView {
            required property int index
            readonly property bool isPointedAt: isHovered && list.isPointed

            x: root.menu.padding - 1
            width: list.width - 2 * x
            colors: root.menu.colors
            font: root.menu.font
            isCurrent: root.menu.currentRow === index
            onPressed: root.menu.choose(index)
            onIsPointedAtChanged: {
                if (isPointedAt)
                    root.menu.currentRow = index
                else if (list.isPointed && isCurrent)
                    root.menu.currentRow = -1
            }
            onNeedsTipChanged: tip.follow(this, needsTip)
        }
        // qmllint enable unqualified
        onPointerChanged: isPointed = true

        Keys.onUpPressed: root.menu.step(-1)
        Keys.onDownPressed: root.menu.step(1)
        Keys.onLeftPressed: root.menu.leave()
        Keys.onRightPressed: root.menu.enter()
        Keys.onReturnPressed: root.menu.choose(root.menu.currentRow)
        Keys.onEnterPressed: root.menu.choose(root.menu.currentRow)
        Keys.onPressed: (event) => {
            event.accepted = true
            if (event.key === Qt.Key_Home)
                root.menu.goToEnd(1)
            else if (event.key === Qt.Key_End)
                root.menu.goToEnd(-1)
            else
                event.accepted = root.menu.chooseByKey(event.key, event.modifiers)
        }

        Connections {
            target: root.menu
            function onRevealed(first, last) {
                list.isPointed = false
                list.positionViewAtIndex(last, ListView.Contain)
                list.positionViewAtIndex(first, ListView.Contain)
                if (first === 0)
                    list.positionViewAtBeginning()
                else if (last === list.count - 1)
                    list.positionViewAtEnd()
            }
        }
        HoverHandler { id: hover }
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: (event) => {
                const y = list.contentY - (event.pixelDelta.y || event.angleDelta.y / 3)
                const end = list.originY + list.contentHeight - list.height
                list.contentY = Math.max(list.originY, Math.min(end, y))
                list.isPointed = true
            }
        }
        RoundedBox { // behind the open submenu and its rows
            parent: list.contentItem
            z: -1
            x: root.menu.padding - 1
            y: root.menu.expandedFrame.y
            width: root.menu.expandedFrame.width
            height: root.menu.expandedFrame.height
            radius: 8
            color: root.menu.colors.expanded
            visible: height > 0
        }
    }
    Rectangle { // how much of the list can be seen
        readonly property real way: list.height - 2 * root.panel.cornerRadius

        anchors { right: list.right; rightMargin: 2 }
        y: list.y + root.panel.cornerRadius + way * list.visibleArea.yPosition
        width: 3
        height: way * list.visibleArea.heightRatio
        radius: 1.5
        color: root.menu.colors.pressed
        visible: list.visibleArea.heightRatio < 1
    }
    RowTip {
        id: tip

        objectName: "tip"
        colors: root.menu.colors
        font: root.menu.font
    }
}

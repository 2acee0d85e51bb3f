import QtQuick
import QtQuick.Templates as T
import Pellar.Controls
import Pellar.Settings

/// A case in force, and the others in a list that opens below it.
T.ComboBox {
    id: root

    required property ChoiceSetting setting
    property string label ///< for those who hear it

    model: setting.names
    currentIndex: setting.index
    onActivated: (index) => setting.choose(index)
    onModelChanged: currentIndex = Qt.binding(() => setting.index)
    implicitWidth: Math.max(110, implicitContentWidthPolicy === T.ComboBox.WidestText ? contentItem.implicitWidth + 44 : 0)
    implicitContentWidthPolicy: T.ComboBox.WidestText
    implicitHeight: 28
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45

    Accessible.name: label
    Accessible.onPressAction: if (enabled) popup.open()

    background: Rectangle {
        radius: 7
        color: Look.colors.face
        border { width: 1; color: Look.colors.faceBorder }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: root.down ? Look.colors.pressed : Look.colors.hovered
            visible: root.down || root.hovered
        }
        FocusRing { around: 7; visible: root.visualFocus }
    }
    contentItem: Text {
        leftPadding: 12
        text: root.displayText
        color: Look.colors.text
        font.pixelSize: 13
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    indicator: SymbolItem {
        x: root.width - width - 9
        y: (root.height - height) / 2
        width: 12
        height: 12
        name: "chevron.up.chevron.down"
        color: Look.colors.dimmedText
    }
    // qmllint disable unqualified
    delegate: T.ItemDelegate {
        id: item

        required property string modelData
        required property int index
        readonly property bool isCurrent: root.highlightedIndex === index

        width: ListView.view ? ListView.view.width : 0
        height: 28
        hoverEnabled: true
        highlighted: isCurrent
        text: modelData

        Accessible.name: modelData
        Accessible.onPressAction: clicked()

        background: Rectangle {
            radius: 6
            color: Look.colors.accent
            visible: item.isCurrent
        }
        contentItem: Text {
            leftPadding: 26
            text: item.modelData
            color: item.isCurrent ? Look.colors.accentText : Look.colors.text
            font.pixelSize: 13
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        SymbolItem {
            x: 9
            y: 8
            width: 12
            height: 12
            name: "checkmark"
            color: item.isCurrent ? Look.colors.accentText : Look.colors.text
            visible: root.currentIndex === item.index
        }
    }
    // qmllint enable unqualified
    popup: T.Popup {
        y: root.height + 4 - shade
        x: root.width - width + shade
        readonly property int shade: 14

        width: Math.max(root.width, 120) + 2 * shade
        implicitHeight: contentItem.implicitHeight + 2 * padding
        padding: shade + 5
        margins: 4 - shade

        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: root.popup.visible ? root.delegateModel : null
            currentIndex: root.highlightedIndex
            interactive: false
        }
        background: GlassPane {
            colors: Look.glass
            shadowExtent: 14
            radius: 10
        }
    }
}

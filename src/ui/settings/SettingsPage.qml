import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// One tab of the settings window: its heading and its sections, scrolled where there is no room for all.
Flickable {
    id: root

    property string title
    property string subtitle
    default property alias sections: column.data
    readonly property Item focused: Window.activeFocusItem

    function scrollTo(y: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, Math.round(y)))
    }
    /// What gets the keyboard is to be seen.
    onFocusedChanged: {
        for (let item = focused; item; item = item.parent) {
            if (item === column) {
                const top = focused.mapToItem(contentItem, 0, 0).y
                if (top < contentY + 12 || top + focused.height > contentY + height - 12)
                    scrollTo(top - (height - focused.height) / 2)
                return
            }
        }
    }

    contentHeight: column.height + 56
    interactive: false
    clip: true
    T.ScrollBar.vertical: ScrollBar {}

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: (event) => root.scrollTo(root.contentY - (event.pixelDelta.y || event.angleDelta.y / 2))
    }
    Column {
        id: column

        x: Math.max(28, (root.width - width) / 2)
        y: 28
        width: Math.min(640, root.width - 56)
        spacing: 26

        Column {
            width: parent.width
            spacing: 5

            Text {
                width: parent.width
                text: root.title
                color: Look.colors.text
                font { pixelSize: 22; weight: Font.Bold }
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            SmallText { width: parent.width; text: root.subtitle; font.pixelSize: 13 }
        }
    }
}

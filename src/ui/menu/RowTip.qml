import QtQuick
import Pellar.Controls
import Pellar.Menu

/// The whole title of a row that shows only a part of it, below the row or, where there is no room, above.
RoundedBox {
    id: root

    required property menuColors colors
    required property font font
    property MenuRow row: null

    function follow(other, needsTip) {
        if (needsTip)
            row = other
        else if (row === other)
            row = null
    }

    function place() {
        const below = row.mapToItem(parent, 0, row.height + 2).y
        y = below + height < parent.height ? below : row.mapToItem(parent, 0, -2).y - height
        visible = true
    }

    x: 8
    width: parent.width - 2 * x
    height: title.implicitHeight + 10
    radius: 6
    color: colors.background
    borderColor: colors.separator
    visible: false
    onRowChanged: visible = false

    Timer {
        interval: 500
        running: root.row !== null
        onTriggered: root.place()
    }
    Text {
        id: title

        anchors { fill: parent; margins: 5; leftMargin: 9; rightMargin: 9 }
        text: root.row ? root.row.row.title : ""
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: root.colors.text
        font.family: root.font.family
        font.pixelSize: root.font.pixelSize - 1
    }
}

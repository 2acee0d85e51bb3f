import QtQuick
import Pellar.Controls
import Pellar.Panel

/// What a panel shows on its glass. The implicit size is that of the open panel.
Item {
    id: root

    required property Panel panel
    default property alias contents: sheet.data
    /// What lies on the glass and unfolds with it, within its border.
    property alias backdrop: behind.data

    GlassPane {
        id: pane

        width: root.panel.paneSize.width + 2 * shadowExtent
        height: root.panel.paneSize.height + 2 * shadowExtent
        colors: root.panel.glass
        shadowExtent: root.panel.shadowExtent
        radius: root.panel.cornerRadius
    }
    Item {
        id: behind

        anchors { fill: pane; margins: root.panel.shadowExtent + 1 }
    }
    Item { // what has not unfolded yet is cut off
        anchors { fill: pane; margins: root.panel.shadowExtent }
        clip: true

        Item {
            id: sheet

            width: root.panel.openSize.width
            height: root.panel.openSize.height
        }
    }
}

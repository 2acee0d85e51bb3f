import QtQuick
import Pellar.Settings

/// Rows on a card, one below the other.
Rectangle {
    default property alias rows: column.data

    implicitHeight: column.height
    radius: 10
    color: Look.colors.card
    border { width: 1; color: Look.colors.line }

    Column {
        id: column

        width: parent.width
    }
}

import QtQuick
import Pellar.Controls
import Pellar.Menu

/// A row of the glass menu.
MenuRow {
    id: root

    required property menuColors colors
    required property font font
    required property bool isCurrent
    readonly property bool isHovered: hover.hovered
    /// Whether not all of a title can be seen that somebody looks at.
    readonly property bool needsTip: title.truncated && (isHovered || isCurrent)
    readonly property color ink: row.isInfo ? colors.dimmedText : colors.text

    height: row.height + row.spaceBelow

    Accessible.role: Accessible.MenuItem

    HoverHandler { id: hover }
    TapHandler {
        id: tap

        enabled: root.row.isSelectable
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.pressed()
    }
    RoundedBox {
        width: parent.width
        height: root.row.height
        radius: 8
        color: tap.pressed ? root.colors.pressed : root.colors.hovered
        visible: root.isCurrent
    }
    RoundedBox {
        x: 8
        width: parent.width - 2 * x
        y: Math.floor(parent.height / 2)
        height: 1
        color: root.colors.separator
        visible: root.row.isSeparator
    }
    RowSymbol {
        frame: root.row.markFrame
        name: root.row.symbol || "checkmark"
        color: root.ink
        visible: root.row.symbol !== "" || root.row.isOn
    }
    RowText {
        id: title

        frame: root.row.titleFrame
        text: root.row.title
        color: root.ink
        font { family: root.font.family; pixelSize: root.font.pixelSize; bold: root.row.isHeader }
    }
    RowText {
        frame: root.row.trailingFrame
        text: root.row.shortcut
        color: root.colors.dimmedText
        font { family: root.font.family; pixelSize: root.font.pixelSize }
    }
    RowSymbol {
        frame: root.row.trailingFrame
        name: root.row.isSubmenu ? "chevron.right" : "checkmark"
        color: root.row.isSubmenu ? root.colors.dimmedText : root.ink
        rotation: root.row.isExpanded ? 90 : 0
        visible: root.row.isSubmenu || (root.row.symbol !== "" && root.row.isOn)
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
    }

    component RowSymbol: SymbolItem {
        required property rect frame

        x: frame.x
        y: frame.y
        width: frame.width
        height: frame.height
    }
}

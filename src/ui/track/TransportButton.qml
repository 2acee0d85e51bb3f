import QtQuick
import Pellar.Controls
import Pellar.Track

/// A round button with a symbol.
Item {
    id: root

    required property TrackModel track
    required property string symbol
    required property string label
    property real symbolSide: Math.round(width / 2)
    readonly property bool hovered: hover.hovered
    readonly property bool pressed: tap.pressed

    signal triggered()

    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: triggered()
    Keys.onReturnPressed: triggered()
    Keys.onEnterPressed: triggered()
    Keys.onSpacePressed: triggered()

    HoverHandler { id: hover }
    TapHandler {
        id: tap

        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.triggered()
    }
    RoundedBox {
        anchors.fill: parent
        radius: width / 2
        color: root.pressed ? root.track.colors.pressed : root.hovered ? root.track.colors.highlight : "transparent"
        borderColor: root.activeFocus ? root.track.colors.focus : "transparent"
    }
    SymbolItem {
        readonly property real side: root.pressed ? Math.round(root.symbolSide * 0.9) : root.symbolSide

        anchors.centerIn: parent
        width: side
        height: side
        name: root.symbol
        color: root.track.colors.text
    }
}

import QtQuick
import Pellar.Controls
import Pellar.Track

/// The cross in the widget's corner.
Item {
    id: root

    required property TrackModel track
    property bool isWanted
    readonly property bool hovered: hover.hovered

    signal triggered()

    width: 20
    height: 20
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Close Widget")
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
        color: "transparent"
        borderColor: root.activeFocus ? root.track.colors.focus : "transparent"
    }
    SymbolItem { // there is always a button for those who do not see
        opacity: root.isWanted || root.hovered || root.activeFocus ? 1 : 0
        anchors.centerIn: parent
        width: 16
        height: 16
        name: "xmark.circle.fill"
        color: root.hovered ? root.track.colors.text : root.track.colors.dimmedText

        Behavior on opacity { NumberAnimation { duration: 150 } }
    }
}

import QtQuick
import Pellar.Track

/// Previous, play and next. `hoveringButton` and `pressingButton` say which of them the pointer is on and
/// which it holds down: "prev", "playPause", "next" or nothing.
Row {
    id: root

    required property TrackModel track
    property real playSide: 52
    property real skipSide: 44
    readonly property string hoveringButton: prev.hovered ? "prev" : play.hovered ? "playPause" : next.hovered ? "next" : ""
    readonly property string pressingButton: prev.pressed ? "prev" : play.pressed ? "playPause" : next.pressed ? "next" : ""

    TransportButton {
        id: prev

        anchors.verticalCenter: parent.verticalCenter
        width: root.skipSide
        height: root.skipSide
        track: root.track
        symbol: "backward.fill"
        label: qsTr("Previous Track")
        onTriggered: root.track.previousTrack()
    }
    TransportButton {
        id: play

        anchors.verticalCenter: parent.verticalCenter
        width: root.playSide
        height: root.playSide
        track: root.track
        symbol: root.track.playSymbol
        label: root.track.playLabel
        onTriggered: root.track.togglePlayPause()
    }
    TransportButton {
        id: next

        anchors.verticalCenter: parent.verticalCenter
        width: root.skipSide
        height: root.skipSide
        track: root.track
        symbol: "forward.fill"
        label: qsTr("Next Track")
        onTriggered: root.track.nextTrack()
    }
}

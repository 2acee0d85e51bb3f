import QtQuick
import Pellar.Track

/// The frosted cover behind a card. That of a new track fades over the last one.
Item {
    id: root

    required property TrackModel track
    property size fullSize
    property real radius

    Connections {
        target: root.track
        function onLookChanged(): void {
            if (!(fade.running && front.opacity < 0.5)) {
                back.picture = front.picture
                fade.restart()
            }
            front.picture = root.track.backdrop
        }
    }
    Pane {
        id: back

        track: root.track
        fullSize: root.fullSize
        radius: root.radius
        visible: fade.running
    }
    Pane {
        id: front

        track: root.track
        fullSize: root.fullSize
        radius: root.radius
        Component.onCompleted: picture = root.track.backdrop
    }
    NumberAnimation {
        id: fade

        target: front
        property: "opacity"
        from: 0
        to: 1
        duration: 600
        easing.type: Easing.InOutQuad
        onFinished: back.picture = front.picture
    }

    component Pane: FrostedPane {
        required property TrackModel track

        anchors.fill: parent
        sheen: track.colors.sheen
    }
}

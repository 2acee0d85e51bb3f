import QtQuick
import Pellar.Controls
import Pellar.Track

/// The cover of what plays. That of a new track fades over the last one.
Item {
    id: root

    required property TrackModel track
    property real radius: 8
    readonly property bool hasPicture: track.hasArtwork

    function follow(): void {
        if (fade.running && front.opacity < 0.5) {
            front.image = root.track.artwork
            return
        }
        back.image = front.image
        front.image = root.track.artwork
        fade.restart()
    }

    Connections {
        target: root.track
        function onArtworkChanged(): void { root.follow() }
    }
    Plate {
        id: back

        track: root.track
        radius: root.radius
        visible: fade.running
    }
    Plate {
        id: front

        track: root.track
        radius: root.radius
        Component.onCompleted: image = root.track.artwork
    }
    NumberAnimation {
        id: fade

        target: front
        property: "opacity"
        from: 0
        to: 1
        duration: 450
        easing.type: Easing.InOutQuad
        onFinished: back.image = front.image
    }

    RoundedBox {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        borderColor: root.track.colors.outline
    }

    component Plate: ArtworkView {
        required property TrackModel track

        anchors.fill: parent
        plate: track.colors.plate
        symbolColor: track.colors.track
        symbolPart: 0.4
    }
}

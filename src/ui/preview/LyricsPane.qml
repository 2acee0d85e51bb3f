import QtQuick
import Pellar.Controls
import Pellar.Lyrics
import Pellar.Preview
import Pellar.Track

/// The words of the song: timed lines, a plain text to scroll through, or what stands in their place.
Item {
    id: root

    required property LyricsModel lyrics
    required property TrackModel track
    /// How far it reaches beyond the text at either side.
    readonly property alias inset: canvas.inset

    Component.onCompleted: lyrics.setShown(root, true)
    Component.onDestruction: lyrics.setShown(root, false)

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Lyrics")
    Accessible.description: canvas.pointedRow < 0 ? "" : lyrics.data(lyrics.index(canvas.pointedRow, 0))
    Accessible.focusable: canvas.visible
    Accessible.focused: activeFocus
    activeFocusOnTab: canvas.visible
    Keys.onUpPressed: canvas.step(-1)
    Keys.onDownPressed: canvas.step(1)
    Keys.onReturnPressed: canvas.choose()
    Keys.onEnterPressed: canvas.choose()

    Item { // what is sung, for those who hear it
        anchors.fill: parent
        visible: root.lyrics.isSynced

        Accessible.role: Accessible.StaticText
        Accessible.name: root.lyrics.activeText
        Accessible.ignored: root.lyrics.activeIndex < 0
    }
    Text {
        id: placeholder

        anchors.horizontalCenter: parent.horizontalCenter
        y: root.lyrics.isPlain ? 2 : Math.round((parent.height - height) / 2) - 8
        text: root.lyrics.placeholder
        textFormat: Text.PlainText
        color: root.track.colors.dimmedText
        font.pixelSize: root.lyrics.isPlain ? 11 : 14

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    RoundedBox {
        anchors { fill: parent; leftMargin: -3; rightMargin: -3 }
        radius: 11
        color: "transparent"
        borderColor: root.track.colors.focus
        visible: root.activeFocus
    }
    LyricsCanvas {
        id: canvas

        anchors { fill: parent; topMargin: root.lyrics.isPlain ? placeholder.height + 2 : 0 }
        visible: root.lyrics.isSynced || root.lyrics.isPlain
        model: root.lyrics
        clock: root.track.clock
        color: root.track.colors.text
        quietColor: root.track.colors.quietText
        plateColor: root.track.colors.highlight
        font { pixelSize: root.lyrics.isPlain ? 14 : 17; weight: root.lyrics.isPlain ? Font.Normal : Font.Bold }

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            cursorShape: canvas.pointedRow >= 0 ? Qt.PointingHandCursor : Qt.ArrowCursor
            onEntered: canvas.point(mouseY)
            onPositionChanged: (mouse) => canvas.point(mouse.y)
            onExited: canvas.leave()
            onClicked: (mouse) => {
                canvas.point(mouse.y)
                canvas.choose()
            }
            onWheel: (wheel) => canvas.turn(-(wheel.pixelDelta.y || wheel.angleDelta.y / 3))
        }
    }
}

import QtQuick
import Pellar.Controls
import Pellar.Lyrics
import Pellar.Panel
import Pellar.Track

PanelView {
    id: root

    required property TrackModel track
    required property LyricsModel lyrics
    readonly property var scrubFrac: track.scrubFrac
    readonly property alias progressHovering: scrubBar.progressHovering
    readonly property alias hoveringButton: transport.hoveringButton
    readonly property alias pressingButton: transport.pressingButton
    readonly property real margin: 24
    // On a low screen the cover is smaller, and there are fewer lines of words.
    readonly property real between: 20 + title.height + byline.height + 10 + scrubBar.height + transport.height + 4
    readonly property real spare: panel.room - cover.y - between - 10

    implicitWidth: 380
    implicitHeight: words.y + words.height + 10

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Now Playing")

    backdrop: FadingFrost {
        anchors.fill: parent
        track: root.track
        fullSize: Qt.size(root.panel.openSize.width - 2, root.panel.openSize.height - 2)
        radius: root.panel.cornerRadius - 1
    }

    SoftShadow {
        id: shadow

        anchors { fill: cover; margins: -extent; topMargin: -extent + 10; bottomMargin: -extent - 10 }
        extent: 24
        radius: 14
        strength: 0.34
        visible: cover.hasPicture
    }
    FadingCover {
        id: cover

        anchors.horizontalCenter: parent.horizontalCenter
        y: root.margin + 4
        width: Math.round(Math.max(64, Math.min(248, root.spare - 172)))
        height: width
        track: root.track
        radius: 14
    }
    MarqueeText {
        id: title

        x: root.margin
        y: cover.y + cover.height + 20
        width: parent.width - 2 * x
        height: 28
        text: root.track.title
        isActive: root.track.isTitleActive
        isCentred: true
        clock: root.track.clock
        color: root.track.colors.text
        font { pixelSize: 19; weight: Font.Bold }

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    MarqueeText {
        id: byline

        x: root.margin
        y: title.y + title.height
        width: parent.width - 2 * x
        height: 22
        text: root.track.byline
        isActive: root.track.isTitleActive
        isCentred: true
        clock: root.track.clock
        color: root.track.colors.dimmedText
        font.pixelSize: 14

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    ScrubBar {
        id: scrubBar

        x: root.margin
        y: byline.y + byline.height + 10
        width: parent.width - 2 * x
        height: implicitHeight
        track: root.track
        font.pixelSize: 11
    }
    TransportRow {
        id: transport

        anchors.horizontalCenter: parent.horizontalCenter
        y: scrubBar.y + scrubBar.height
        spacing: 14
        track: root.track
    }
    LyricsPane {
        id: words

        x: root.margin - inset
        y: cover.y + cover.height + root.between
        width: parent.width - 2 * x
        height: Math.round(Math.max(84, Math.min(172, root.spare - cover.height)))
        lyrics: root.lyrics
        track: root.track
    }
}

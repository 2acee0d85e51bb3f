import QtQuick
import Pellar.Controls
import Pellar.Lyrics
import Pellar.Track
import Pellar.Widget

/// The card of the widget: the preview's look in small.
Item {
    id: root

    required property WidgetWindow widget
    required property WidgetManager manager
    required property TrackModel track
    required property LyricsModel lyrics
    readonly property widgetLayout parts: widget.layout
    readonly property bool isLyricShown: manager.showLyric
    readonly property string words: lyrics.isSynced ? lyrics.activeText : lyrics.placeholder

    readonly property bool isOverButton: transport.hoveringButton !== "" || close.hovered

    onIsOverButtonChanged: widget.setOverButton(isOverButton)
    onIsLyricShownChanged: lyrics.setShown(root, isLyricShown)
    Component.onCompleted: lyrics.setShown(root, isLyricShown)
    Component.onDestruction: lyrics.setShown(root, false)

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Pellar Widget")

    FadingFrost {
        anchors.fill: parent
        track: root.track
        fullSize: Qt.size(root.width, root.height)
        radius: root.widget.cornerRadius
    }
    RoundedBox {
        anchors.fill: parent
        radius: root.widget.cornerRadius
        color: "transparent"
        borderColor: root.track.colors.outline
    }
    HoverHandler { id: hover }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onPressed: (mouse) => root.widget.press(Qt.point(mouse.x, mouse.y))
        onPositionChanged: (mouse) => {
            if (pressed)
                root.widget.drag()
            else
                cursorShape = root.widget.cursorAt(Qt.point(mouse.x, mouse.y))
        }
        onReleased: root.widget.release()
        onCanceled: root.widget.release()
    }
    SoftShadow {
        anchors { fill: cover; margins: -extent; topMargin: -extent + 3; bottomMargin: -extent - 3 }
        extent: 8
        radius: cover.radius
        strength: 0.28
        visible: cover.visible && cover.hasPicture
    }
    FadingCover {
        id: cover

        x: root.parts.artwork.x
        y: root.parts.artwork.y
        width: root.parts.artwork.width
        height: root.parts.artwork.height
        visible: width > 0
        track: root.track
        radius: Math.min(14, Math.round(width / 7))
    }
    Line {
        track: root.track
        frame: root.parts.title
        isLookedAt: hover.hovered
        text: root.track.title
        isShrunkToFit: true
        smallestSize: Math.max(13, root.parts.artistSize)
        color: root.track.colors.text
        font { pixelSize: Math.max(1, root.parts.titleSize); weight: Font.Bold }
    }
    Line {
        track: root.track
        frame: root.parts.artist
        isLookedAt: hover.hovered
        text: root.track.artist
        color: root.track.colors.dimmedText
        font.pixelSize: Math.max(1, root.parts.artistSize)
    }
    ScrubBar {
        x: root.parts.progress.x
        y: root.parts.progress.y
        width: root.parts.progress.width
        height: root.parts.progress.height
        visible: height > 0
        barHeight: 14
        track: root.track
        trailingText: root.track.durationText
        font.pixelSize: 10
    }
    TransportRow {
        id: transport

        anchors.horizontalCenter: parent.horizontalCenter
        y: root.parts.transport.y
        visible: root.parts.transport.height > 0
        playSide: 28
        skipSide: 28
        spacing: 16
        track: root.track
    }
    Text { // in two rows rather than scrolled, for the moment that a line lasts
        x: root.parts.lyric.x
        y: root.parts.lyric.y
        width: root.parts.lyric.width
        height: root.parts.lyric.height
        visible: height > 0
        text: root.words
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        fontSizeMode: Text.Fit
        minimumPixelSize: 10
        clip: true
        color: root.lyrics.isSynced ? root.track.colors.text : root.track.colors.dimmedText
        font { pixelSize: 13; weight: root.lyrics.isSynced ? Font.DemiBold : Font.Normal }

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    CloseButton {
        id: close

        anchors { right: parent.right; top: parent.top; margins: 5 }
        isWanted: hover.hovered
        track: root.track
        onTriggered: root.manager.disable()
    }

    component Line: MarqueeText {
        required property TrackModel track
        required property rect frame
        required property bool isLookedAt

        x: frame.x
        y: frame.y
        width: frame.width
        height: frame.height
        visible: height > 0
        isActive: track.isTitleActive && (track.isPlaying || isLookedAt)
        clock: track.clock

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}

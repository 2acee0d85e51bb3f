import QtQuick
import Pellar.Controls
import Pellar.Track

/// How far the track is, with the times below its ends. A click or a drag on it goes to a place.
Item {
    id: root

    required property TrackModel track
    property string trailingText: track.remainingText
    property font font
    property real barHeight: 18
    readonly property bool progressHovering: pointer.containsMouse || pointer.pressed
    readonly property real value: track.progress
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: bar.height + elapsed.implicitHeight
    enabled: track.isSeekable
    activeFocusOnTab: true

    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Position")
    Accessible.description: track.elapsedText
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onIncreaseAction: track.seekBy(5)
    Accessible.onDecreaseAction: track.seekBy(-5)
    Keys.onRightPressed: track.seekBy(5)
    Keys.onLeftPressed: track.seekBy(-5)
    Keys.onUpPressed: track.seekBy(5)
    Keys.onDownPressed: track.seekBy(-5)

    RoundedBox {
        anchors { fill: bar; leftMargin: -6; rightMargin: -6 }
        radius: height / 2
        borderColor: root.activeFocus ? root.track.colors.focus : "transparent"
        color: "transparent"
        visible: root.activeFocus
    }
    Item {
        id: bar

        width: parent.width
        height: root.barHeight

        ProgressLine {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: 12
            thickness: root.progressHovering ? 6 : 4
            fraction: root.track.progress
            hasKnob: root.progressHovering && root.track.isSeekable
            track: root.track.colors.track
            fill: root.track.colors.fill
        }
        MouseArea {
            id: pointer

            function drag(x: real): void { root.track.scrub(width > 0 ? x / width : 0) }

            anchors.fill: parent
            hoverEnabled: true
            preventStealing: true
            onPressed: (mouse) => drag(mouse.x)
            onPositionChanged: (mouse) => {
                if (pressed && root.track.scrubFrac !== undefined) // a new track has ended it
                    drag(mouse.x)
            }
            onReleased: root.track.endScrub()
            onCanceled: root.track.cancelScrub()
        }
    }
    FigureText {
        id: elapsed

        anchors { left: parent.left; top: bar.bottom }
        text: root.track.isSeekable ? root.track.elapsedText : ""
        font: root.font
        color: root.track.colors.dimmedText
    }
    FigureText {
        anchors { right: parent.right; top: bar.bottom }
        text: root.trailingText
        font: root.font
        color: root.track.colors.dimmedText
    }
}

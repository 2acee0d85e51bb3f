import QtQuick
import Pellar.Controls
import Pellar.Pill

Item {
    id: root

    required property PillModel pill
    readonly property pillColors colors: pill.colors
    readonly property pillLayout parts: pill.layout

    RoundedBox {
        width: root.parts.size.width
        height: root.parts.size.height
        radius: root.parts.cornerRadius
        color: root.colors.background
        borderColor: root.colors.border
    }

    PillControl {
        pill: root.pill
        zone: "art"
        frame: root.parts.albumArt
        label: qsTr("Open Player")

        ArtworkView {
            anchors.fill: parent
            radius: 4
            image: root.pill.artwork
            plate: root.colors.plate
            symbolColor: root.colors.dimmedText
        }
    }
    PillPart {
        frame: root.parts.visualizer

        VisualizerView {
            anchors.fill: parent
            model: root.pill.visualizer
            clock: root.pill.clock
            color: root.colors.bars
            restColor: root.colors.dimmedText
        }
    }
    PillButton {
        pill: root.pill
        zone: "prev"
        frame: root.parts.previousButton
        symbol: "backward.fill"
        label: qsTr("Previous Track")
    }
    PillButton {
        pill: root.pill
        zone: "play"
        frame: root.parts.playButton
        symbol: root.pill.playSymbol
        label: root.pill.playLabel
    }
    PillButton {
        pill: root.pill
        zone: "next"
        frame: root.parts.nextButton
        symbol: "forward.fill"
        label: qsTr("Next Track")
    }
    PillPart {
        frame: root.parts.title

        Accessible.role: Accessible.StaticText
        Accessible.name: root.pill.title

        MarqueeText {
            anchors { fill: parent; topMargin: -2; bottomMargin: -2 } // descenders reach below the line
            text: root.pill.title
            isActive: root.pill.isTitleActive
            isShrunkToFit: root.pill.isIdle
            clock: root.pill.clock
            color: root.pill.isIdle ? root.colors.dimmedText : root.colors.text
            font { pixelSize: 12; weight: Font.Medium }
        }
    }
    PillPart {
        id: position

        readonly property real value: root.pill.progress
        readonly property real minimumValue: 0
        readonly property real maximumValue: 1

        frame: root.parts.progress

        Accessible.role: Accessible.Slider
        Accessible.name: qsTr("Position")
        Accessible.onIncreaseAction: root.pill.seekBy(5)
        Accessible.onDecreaseAction: root.pill.seekBy(-5)

        ProgressLine {
            anchors { fill: parent; topMargin: -2; bottomMargin: -2 }
            thickness: position.height
            fraction: root.pill.progress
            hasKnob: root.pill.isSeeking || (root.pill.hoveringBar && fraction > 0)
            track: root.colors.track
            fill: root.colors.fill
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton
        hoverEnabled: true
        onPositionChanged: (mouse) => root.pill.hover(Qt.point(mouse.x, mouse.y))
        onEntered: root.pill.hover(Qt.point(mouseX, mouseY))
        onExited: root.pill.leave()
        onPressed: (mouse) => root.pill.press(Qt.point(mouse.x, mouse.y))
        onReleased: (mouse) => root.pill.release(Qt.point(mouse.x, mouse.y))
        onCanceled: root.pill.cancelPress()
    }
}

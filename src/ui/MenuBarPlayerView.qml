import QtQuick
import Pellar

Item {
    id: root

    required property PillModel pill

    Rectangle {
        anchors.fill: parent
        radius: root.pill.cornerRadius
        color: root.pill.colors.background
    }
    Rectangle {
        anchors.fill: parent
        radius: root.pill.cornerRadius
        color: "transparent"
        border { width: 1; color: root.pill.colors.border }
    }

    component Control: Item {
        id: control

        required property string zone
        required property rect frame
        required property string symbol
        required property string label

        x: frame.x
        y: frame.y
        width: frame.width
        height: frame.height
        visible: width > 0

        Accessible.role: Accessible.Button
        Accessible.name: label
        Accessible.onPressAction: root.pill.tap(Qt.point(x + width / 2, y + height / 2))

        Rectangle {
            anchors { fill: parent; margins: -2 }
            radius: 6
            color: root.pill.colors.highlight
            visible: root.pill.hoveredZone === control.zone
        }
        SymbolItem {
            anchors.centerIn: parent
            width: 13
            height: 13
            name: control.symbol
            color: root.pill.colors.text
        }
    }

    Control {
        zone: "prev"
        frame: root.pill.previousButton
        symbol: "backward.fill"
        label: qsTr("Previous Track")
    }
    Control {
        zone: "play"
        frame: root.pill.playButton
        symbol: root.pill.playSymbol
        label: root.pill.playLabel
    }
    Control {
        zone: "next"
        frame: root.pill.nextButton
        symbol: "forward.fill"
        label: qsTr("Next Track")
    }

    Text {
        x: root.pill.titleFrame.x
        y: root.pill.titleFrame.y
        width: root.pill.titleFrame.width
        height: root.pill.titleFrame.height
        visible: width > 0
        text: root.pill.title
        textFormat: Text.PlainText
        maximumLineCount: 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        color: root.pill.isIdle ? root.pill.colors.dimmedText : root.pill.colors.text
        font { pixelSize: 12; weight: Font.Medium }

        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Rectangle {
        id: track

        x: root.pill.progressFrame.x
        y: root.pill.progressFrame.y
        width: root.pill.progressFrame.width
        height: root.pill.progressFrame.height
        radius: height / 2
        color: root.pill.colors.track

        Accessible.role: Accessible.ProgressBar
        Accessible.name: qsTr("Progress")

        Rectangle {
            width: Math.max(track.height, track.width * root.pill.progress)
            height: track.height
            radius: track.radius
            color: root.pill.colors.fill
            visible: root.pill.progress > 0
        }
    }

    HoverHandler {
        onPointChanged: if (hovered) root.pill.hover(point.position)
        onHoveredChanged: if (!hovered) root.pill.leave()
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton
        onTapped: (eventPoint) => root.pill.tap(eventPoint.position)
    }
}

import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// The window of an update.
Rectangle {
    id: root

    required property UpdateModel model
    readonly property UpdaterManager updater: model.updater

    color: Look.colors.background

    AppIcon {
        id: icon

        x: 24
        y: 24
        width: 56
        height: 56
    }
    Column {
        id: words

        anchors { left: icon.right; leftMargin: 18; right: parent.right; rightMargin: 24; top: icon.top; topMargin: 4 }
        spacing: 6

        Text {
            width: parent.width
            text: root.model.heading
            color: Look.colors.text
            textFormat: Text.PlainText
            font { pixelSize: 17; weight: Font.Bold }
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        SmallText { width: parent.width; text: root.model.text; font.pixelSize: 13 }
        T.ProgressBar {
            id: bar

            width: parent.width
            implicitHeight: 10
            indeterminate: root.updater.progress === 0
            value: root.updater.progress
            visible: root.model.isUnderWay
            Accessible.name: root.model.heading

            background: Rectangle {
                y: 2
                height: 6
                radius: 3
                color: Look.colors.well
            }
            contentItem: Item {
                Rectangle {
                    y: 2
                    width: parent.width * (bar.indeterminate ? 0.04 : bar.position)
                    height: 6
                    radius: 3
                    color: Look.colors.accent
                }
            }
        }
    }
    Rectangle {
        anchors {
            top: words.bottom; topMargin: 18; bottom: foot.top; bottomMargin: 18
            left: words.left; right: words.right
        }
        radius: 10
        color: Look.colors.card
        border { width: 1; color: Look.colors.line }
        visible: root.model.isOffer && root.updater.notes !== "" && height > 40

        Flickable {
            id: page

            anchors { fill: parent; margins: 1 }
            contentHeight: notes.height + 24
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            T.ScrollBar.vertical: ScrollBar {}

            SmallText {
                id: notes

                x: 14
                y: 12
                width: page.width - 28
                text: root.updater.notes
            }
        }
    }
    Flow {
        id: foot

        anchors { left: words.left; right: words.right; bottom: parent.bottom; bottomMargin: 22 }
        layoutDirection: Qt.RightToLeft
        spacing: 8

        PushButton {
            text: root.model.isOffer ? qsTr("Install") : root.model.isUnderWay ? qsTr("Cancel") : qsTr("OK")
            isProminent: !root.model.isUnderWay
            focus: true
            onClicked: {
                if (root.model.isOffer)
                    root.updater.install()
                else
                    root.updater.cancel()
            }
        }
        PushButton {
            text: qsTr("Remind Me Later")
            visible: root.model.isOffer
            onClicked: root.updater.remindLater()
        }
        PushButton {
            text: qsTr("Skip This Version")
            visible: root.model.isOffer
            onClicked: root.updater.skip()
        }
    }
}

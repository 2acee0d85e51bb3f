import QtQuick
import Pellar.Controls
import Pellar.Settings

/// A card of the onboarding window.
Card {
    id: root

    required property PermissionCard card
    readonly property bool isWell: card.isDone && card.isGood
    readonly property color findingColor: isWell ? Look.colors.good : Look.colors.dimmedText

    Accessible.role: Accessible.Grouping
    Accessible.name: card.title
    Accessible.description: isWell ? qsTr("Done. %1").arg(card.finding).trim() : card.finding

    Item {
        width: parent.width
        implicitHeight: Math.max(64, words.height + 26)

        SymbolTile {
            x: 14
            anchors.verticalCenter: parent.verticalCenter
            width: 36
            height: 36
            symbol: root.card.symbol
            tint: root.card.color
        }
        Column {
            id: words

            anchors {
                left: parent.left; leftMargin: 64
                right: end.left; rightMargin: 14
                verticalCenter: parent.verticalCenter
            }
            spacing: 2

            Text {
                width: parent.width
                text: root.card.title
                color: Look.colors.text
                font { pixelSize: 13; weight: Font.DemiBold }
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            SmallText { width: parent.width; text: root.card.description }
            SmallText {
                width: parent.width
                text: root.card.finding
                font.pixelSize: 11
                color: root.findingColor
            }
        }
        Row {
            id: end

            anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
            spacing: 8

            Repeater {
                model: root.card.isChoice || !root.card.isDone ? root.card.actions : []
                // qmllint disable unqualified
                delegate: PushButton {
                    required property string modelData
                    required property int index

                    text: modelData
                    isProminent: root.card.chosen === index
                    onClicked: root.card.act(index)
                    spokenName: qsTr("%1: %2").arg(root.card.title).arg(modelData)
                    Accessible.checkable: root.card.isChoice
                    Accessible.checked: isProminent
                }
                // qmllint enable unqualified
            }
            SymbolItem {
                anchors.verticalCenter: parent.verticalCenter
                width: 20
                height: 20
                name: "checkmark.circle.fill"
                color: root.findingColor
                visible: root.card.isDone
            }
        }
    }
}

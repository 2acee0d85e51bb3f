import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// The onboarding window.
Rectangle {
    id: root

    required property OnboardingModel model
    property bool cardsVisible: false

    color: Look.colors.background
    Component.onCompleted: cardsVisible = true

    Flickable {
        id: page

        function scrollTo(y: real) {
            contentY = Math.max(0, Math.min(contentHeight - height, Math.round(y)))
        }

        anchors { top: parent.top; left: parent.left; right: parent.right; bottom: foot.top }
        contentHeight: content.height + 56
        interactive: false
        clip: true
        T.ScrollBar.vertical: ScrollBar {}

        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: (event) => page.scrollTo(page.contentY - (event.pixelDelta.y || event.angleDelta.y / 2))
        }
        Column {
            id: content

            x: Math.max(28, (page.width - width) / 2)
            y: 28
            width: Math.min(640, page.width - 56)
            spacing: 12

            AppIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 76
                height: 76
            }
            Text {
                width: parent.width
                text: qsTr("Welcome to Pellar")
                color: Look.colors.text
                font { pixelSize: 25; weight: Font.Bold }
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            SmallText {
                width: parent.width
                bottomPadding: 10
                text: qsTr("Your menu bar music controller. Grant a few\npermissions to get the full experience.")
                font.pixelSize: 14
                horizontalAlignment: Text.AlignHCenter
            }
            Repeater {
                model: root.model.cards
                // qmllint disable unqualified
                delegate: PermissionCardView {
                    id: view

                    required property PermissionCard modelData
                    required property int index

                    width: content.width
                    card: modelData
                    opacity: root.cardsVisible ? 1 : 0

                    Behavior on opacity {
                        SequentialAnimation {
                            PauseAnimation { duration: 60 * view.index }
                            NumberAnimation { duration: 220; easing.type: Easing.OutCubic }
                        }
                    }
                }
                // qmllint enable unqualified
            }
        }
    }
    Rectangle {
        id: foot

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 60
        color: Look.colors.sidebar

        Rectangle {
            width: parent.width
            height: 1
            color: Look.colors.line
        }
        SmallText {
            anchors { left: parent.left; leftMargin: 28; right: done.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
            text: qsTr("All of this can be changed later in Settings.")
        }
        PushButton {
            id: done

            anchors { right: parent.right; rightMargin: 28; verticalCenter: parent.verticalCenter }
            implicitHeight: 32
            text: qsTr("Get Started")
            isProminent: true
            focus: true
            onClicked: root.Window.window.close()
        }
    }
}

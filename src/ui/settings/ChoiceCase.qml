import QtQuick
import QtQuick.Templates as T
import Pellar.Settings

/// A case of a `ChoiceGroup`. Its looks are for whoever makes it.
T.AbstractButton { // Qt 6.4 leaks a T.RadioButton that a screen reader hears
    id: root

    required property string modelData ///< its name
    required property int index
    required property ChoiceSetting setting
    readonly property bool isOn: setting.index === index

    hoverEnabled: true
    focusPolicy: isOn ? Qt.TabFocus : Qt.NoFocus
    focus: isOn
    checkable: true
    autoExclusive: true
    checked: isOn
    onClicked: {
        setting.choose(index)
        checked = Qt.binding(() => isOn) // whatever comes of it
    }

    Accessible.role: Accessible.RadioButton
    Accessible.name: modelData
    Accessible.onToggleAction: setting.choose(index)
    Accessible.onPressAction: setting.choose(index)
}

import QtQuick
import Pellar.Settings

/// The cases of a setting, one of them in force: it has the keyboard, and the arrow keys go to the next.
FocusScope {
    id: root

    required property ChoiceSetting setting
    required property Repeater cases ///< of a `ChoiceCase` each
    property string label ///< for those who hear it
    readonly property real widest: {
        let widest = 1
        for (let i = 0; i < cases.count; ++i)
            widest = Math.max(widest, cases.itemAt(i)?.implicitWidth ?? 0)
        return widest
    }

    function step(by: int) {
        const to = setting.index + by
        cases.itemAt(to)?.forceActiveFocus(Qt.TabFocusReason) // first: Tab would go on stopping at the other
        setting.choose(to)
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: label
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)
}

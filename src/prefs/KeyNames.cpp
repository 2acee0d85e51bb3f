#include "prefs/KeyNames.h"

#include <QStringList>

namespace {

/// In the order of the codes, from 0. An underscore stands for a space, a question mark for a code
/// that no key has.
constexpr const char* names =
    "A S D F H G Z X C V § B Q W E R Y T 1 2 3 4 6 5 = 9 7 - 8 0 ] O U [ I P Return L J ' K ; \\ , "
    "/ N M . Tab Space ` Delete ? Escape ? ? ? ? ? ? ? ? ? ? F17 Keypad_. ? Keypad_* ? Keypad_+ ? "
    "Clear Volume_Up Volume_Down Mute Keypad_/ Enter ? Keypad_- F18 F19 Keypad_= Keypad_0 "
    "Keypad_1 Keypad_2 Keypad_3 Keypad_4 Keypad_5 Keypad_6 Keypad_7 F20 Keypad_8 Keypad_9 ? ? ? "
    "F5 F6 F7 F3 F8 F9 ? F11 ? F13 F16 F14 ? F10 Menu F12 ? F15 Help Home Page_Up Forward_Delete "
    "F4 End F2 Page_Down F1 Left_Arrow Right_Arrow Down_Arrow Up_Arrow";

} // namespace

std::optional<QString> keyName(quint32 keyCode)
{
    static const QStringList list = QString::fromUtf8(names).split(u' ');
    const QString name = list.value(keyCode, QStringLiteral("?"));
    return name != u'?' ? std::optional(QString(name).replace(u'_', u' ')) : std::nullopt;
}

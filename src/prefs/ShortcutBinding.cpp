#include "prefs/ShortcutBinding.h"

#include "platform/HotKeys.h"
#include "prefs/KeyNames.h"

#include <array>
#include <limits>
#include <utility>

namespace {

const QString keyCodeEntry = QStringLiteral("keyCode");
const QString modifiersEntry = QStringLiteral("modifiers");

/// In the order in which they are shown.
constexpr std::array<std::pair<quint32, char16_t>, 4> symbols = {{{HotKeyModifier::control, u'⌃'},
                                                                  {HotKeyModifier::option, u'⌥'},
                                                                  {HotKeyModifier::shift, u'⇧'},
                                                                  {HotKeyModifier::command, u'⌘'}}};

std::optional<quint32> number(const QVariant& stored)
{
    const auto value = StoredForm<qlonglong>::read(stored);
    const bool fits = value && *value >= 0 && *value <= std::numeric_limits<quint32>::max();
    return fits ? std::optional(static_cast<quint32>(*value)) : std::nullopt;
}

} // namespace

std::optional<ShortcutBinding> ShortcutBinding::from(const KeyDown& event)
{
    quint32 held = 0;
    for (const auto& [bit, symbol] : symbols) {
        held |= event.modifiers & bit;
    }
    return held != 0 ? std::optional(ShortcutBinding{event.keyCode, held}) : std::nullopt;
}

ShortcutBinding ShortcutBinding::standard(PellarShortcut shortcut)
{
    constexpr quint32 modifiers = HotKeyModifier::command | HotKeyModifier::shift;
    switch (shortcut) {
    case PellarShortcut::playPause:
        return {49, modifiers}; // Space
    case PellarShortcut::nextTrack:
        return {124, modifiers}; // right arrow
    case PellarShortcut::previousTrack:
        return {123, modifiers}; // left arrow
    }
    Q_UNREACHABLE();
}

QString ShortcutBinding::displayString() const
{
    QString text;
    for (const auto& [bit, symbol] : symbols) {
        if ((modifiers & bit) != 0) {
            text += QChar(symbol);
        }
    }
    const QString key = keyName(keyCode).value_or(QString::number(keyCode));
    return text.isEmpty() ? key : QString(text + u' ' + key);
}

QVariant StoredForm<ShortcutBinding>::of(const ShortcutBinding& binding)
{
    return QVariantMap{{keyCodeEntry, qlonglong{binding.keyCode}},
                       {modifiersEntry, qlonglong{binding.modifiers}}};
}

std::optional<ShortcutBinding> StoredForm<ShortcutBinding>::read(const QVariant& stored)
{
    const auto entries = StoredForm<QVariantMap>::read(stored).value_or(QVariantMap());
    const auto keyCode = number(entries.value(keyCodeEntry));
    const auto modifiers = number(entries.value(modifiersEntry));
    return keyCode && modifiers ? std::optional(ShortcutBinding{*keyCode, *modifiers}) : std::nullopt;
}

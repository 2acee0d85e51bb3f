#include "prefs/KeyboardShortcutManager.h"

#include "base/NotificationCenter.h"
#include "platform/Platform.h"

#include <algorithm>

namespace {

using Binding = std::optional<ShortcutBinding>;

/// Stored for an action whose hot key was taken away.
const QString disabled = QStringLiteral("disabled");

QString key(PellarShortcut shortcut)
{
    return QStringLiteral("pellar.shortcut.") + rawValue(shortcut);
}

/// An action of which nothing is stored has its standard hot key.
Binding stored(const UserDefaults& defaults, PellarShortcut shortcut)
{
    if (defaults.string(key(shortcut)) == disabled) {
        return std::nullopt;
    }
    return readStored(defaults, key(shortcut), ShortcutBinding::standard(shortcut));
}

KeyboardShortcutManager::Bindings changed(KeyboardShortcutManager::Bindings bindings, PellarShortcut shortcut,
                                          const Binding& binding)
{
    if (binding) {
        bindings.insert(shortcut, *binding);
    } else {
        bindings.remove(shortcut);
    }
    return bindings;
}

} // namespace

const QString KeyboardShortcutManager::shortcutsChanged =
    QStringLiteral("com.orvalen.pellar.shortcutsChanged");

KeyboardShortcutManager::KeyboardShortcutManager(UserDefaults& defaults, NotificationCenter& notifications)
    : _defaults(defaults)
    , _notifications(notifications)
{
    Bindings bindings;
    for (const auto& each : Choices<PellarShortcut>::all) {
        bindings = changed(bindings, each.value, stored(_defaults, each.value));
    }
    _bindings = bindings;
}

KeyboardShortcutManager& KeyboardShortcutManager::shared()
{
    static auto* const instance =
        new KeyboardShortcutManager(UserDefaults::standard(), Platform::current().notifications);
    return *instance;
}

std::optional<ShortcutBinding> KeyboardShortcutManager::binding(PellarShortcut shortcut) const
{
    const Bindings& bindings = _bindings;
    const auto found = bindings.constFind(shortcut);
    return found != bindings.cend() ? std::optional(*found) : std::nullopt;
}

std::optional<PellarShortcut> KeyboardShortcutManager::owner(const ShortcutBinding& chord) const
{
    const Bindings& bindings = _bindings;
    const auto found = std::find(bindings.cbegin(), bindings.cend(), chord);
    return found != bindings.cend() ? std::optional(found.key()) : std::nullopt;
}

void KeyboardShortcutManager::setBinding(const std::optional<ShortcutBinding>& binding,
                                         PellarShortcut shortcut)
{
    store(binding, shortcut);
    _bindings = changed(_bindings, shortcut, binding);
    _notifications.post(shortcutsChanged);
}

void KeyboardShortcutManager::resetToDefaults()
{
    Bindings bindings;
    for (const auto& each : Choices<PellarShortcut>::all) {
        const ShortcutBinding standard = ShortcutBinding::standard(each.value);
        store(standard, each.value);
        bindings.insert(each.value, standard);
    }
    _bindings = bindings;
    _notifications.post(shortcutsChanged);
}

void KeyboardShortcutManager::store(const std::optional<ShortcutBinding>& binding, PellarShortcut shortcut)
{
    _defaults.setObject(key(shortcut), binding ? StoredForm<ShortcutBinding>::of(*binding) : disabled);
}

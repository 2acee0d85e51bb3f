#include "linux/x11/KeyboardState.h"

#include <QList>

#include <algorithm>
#include <span>

namespace {

constexpr xcb_keysym_t tabSymbol = 0xFF09;
constexpr xcb_keysym_t returnSymbol = 0xFF0D;
constexpr xcb_keysym_t unicodeSymbols = 0x0100'0000;

/// The server shows the symbols of two layouts in fixed places; those of a third are anywhere.
constexpr size_t readableLayouts = 2;
constexpr size_t levels = 2;

struct Key {
    xcb_keycode_t keycode = 0;
    bool isShifted = false;
};

xcb_keysym_t symbolOf(char32_t character)
{
    if (character == U'\t') {
        return tabSymbol;
    }
    if (character == U'\n' || character == U'\r') {
        return returnSymbol;
    }
    const bool isLatin1 =
        (character >= 0x20 && character <= 0x7E) || (character >= 0xA0 && character <= 0xFF);
    return isLatin1 ? character : unicodeSymbols + character;
}

xcb_keysym_t symbolAt(std::span<const xcb_keysym_t> key, size_t layout, size_t level)
{
    const auto at = [key](size_t column) { return column < key.size() ? key[column] : XCB_NO_SYMBOL; };
    // A key that the second layout leaves out keeps its meaning from the first.
    const bool isLeftOut = at(layout * levels) == XCB_NO_SYMBOL && at(layout * levels + 1) == XCB_NO_SYMBOL;
    return at((isLeftOut ? 0 : layout * levels) + level);
}

std::optional<Key> findKey(xcb_keysym_t symbol, size_t layout, const KeyboardState& state)
{
    const std::span symbols(state.symbols);
    const size_t count = state.columns > 0 ? symbols.size() / state.columns : 0;
    for (const size_t level : {0, 1}) {
        for (size_t i = 0; i < count; ++i) {
            const auto key = symbols.subspan(i * state.columns, state.columns);
            if (symbolAt(key, layout, level) == symbol) {
                return Key{static_cast<xcb_keycode_t>(state.firstKeycode + i), level == 1};
            }
        }
    }
    return std::nullopt;
}

/// On the present layout, else, if wanted, on any that can be read.
std::optional<Key> findKey(xcb_keysym_t symbol, bool onAnyLayout, const KeyboardState& state)
{
    const size_t present = state.mask >> 13U & 3U;
    std::optional<Key> found;
    if (present < readableLayouts) {
        found = findKey(symbol, present, state);
    }
    for (size_t layout = 0; onAnyLayout && !found && layout < readableLayouts; ++layout) {
        found = findKey(symbol, layout, state);
    }
    return found;
}

std::optional<Key> findKey(char32_t character, KeyModifiers modifiers, const KeyboardState& state)
{
    const bool isShortcut = modifiers.testAnyFlags(KeyModifier::control | KeyModifier::alt);
    return findKey(symbolOf(character), isShortcut, state);
}

std::span<const xcb_keycode_t> modifierKeys(xcb_map_index_t modifier, const KeyboardState& state)
{
    return std::span(state.modifierKeys).subspan(modifier * state.keysPerModifier, state.keysPerModifier);
}

std::optional<xcb_keycode_t> modifierKey(xcb_map_index_t modifier, const KeyboardState& state)
{
    const auto keys = modifierKeys(modifier, state);
    const auto found = std::find_if(keys.begin(), keys.end(), [](auto key) { return key != 0; });
    return found != keys.end() ? std::optional(*found) : std::nullopt;
}

/// The keys of a keystroke's modifiers; none when the keyboard lacks one of them.
std::optional<std::vector<xcb_keycode_t>> wantedModifiers(KeyModifiers modifiers, const KeyboardState& state)
{
    constexpr std::array<std::pair<KeyModifier, xcb_map_index_t>, 3> indexes = {
        {{KeyModifier::control, XCB_MAP_INDEX_CONTROL},
         {KeyModifier::alt, XCB_MAP_INDEX_1},
         {KeyModifier::shift, XCB_MAP_INDEX_SHIFT}}};
    std::vector<xcb_keycode_t> keys;
    for (const auto& [modifier, index] : indexes) {
        if (!modifiers.testFlag(modifier)) {
            continue;
        }
        const auto key = modifierKey(index, state);
        if (!key) {
            return std::nullopt;
        }
        keys.push_back(*key);
    }
    return keys;
}

void tap(std::vector<KeyEvent>& events, xcb_keycode_t keycode)
{
    events.push_back({keycode, true});
    events.push_back({keycode, false});
}

/// Types the text; the modifiers are down already. False when a character is on no key.
bool type(std::vector<KeyEvent>& events, const Keystroke& keystroke, const KeyboardState& state)
{
    const auto shift = modifierKey(XCB_MAP_INDEX_SHIFT, state);
    for (const char32_t character : keystroke.text.toUcs4()) {
        const auto key = findKey(character, keystroke.modifiers, state);
        if (!key || (key->isShifted && !shift)) {
            return false;
        }
        const bool needsShift = key->isShifted && !keystroke.modifiers.testFlag(KeyModifier::shift);
        if (needsShift) {
            events.push_back({*shift, true});
        }
        tap(events, key->keycode);
        if (needsShift) {
            events.push_back({*shift, false});
        }
    }
    return true;
}

/// Lets go of every held key: a modifier would change what is typed, and a hot key's grab would swallow it.
std::vector<KeyEvent> releases(const KeyboardState& state)
{
    std::vector<KeyEvent> events;
    for (unsigned keycode = state.firstKeycode; keycode <= 0xFF; ++keycode) {
        if (state.isHeld(static_cast<xcb_keycode_t>(keycode))) {
            events.push_back({static_cast<xcb_keycode_t>(keycode), false});
        }
    }
    return events;
}

/// What switches an active Caps Lock off, and on again.
std::vector<KeyEvent> lockToggle(const KeyboardState& state)
{
    std::vector<KeyEvent> events;
    const auto key = modifierKey(XCB_MAP_INDEX_LOCK, state);
    if (key && (state.mask & XCB_MOD_MASK_LOCK) != 0) {
        tap(events, *key);
    }
    return events;
}

/// What is done before and after keys are pressed, so that nothing held or locked counts.
struct Quiet {
    explicit Quiet(const KeyboardState& state)
    {
        const std::vector<KeyEvent> lock = lockToggle(state);
        before = releases(state);
        for (const KeyEvent& release : before) {
            const auto& keys = state.modifierKeys;
            if (std::find(keys.begin(), keys.end(), release.keycode) != keys.end()) {
                after.push_back({release.keycode, true});
            }
        }
        before.insert(before.end(), lock.begin(), lock.end());
        after.insert(after.begin(), lock.begin(), lock.end());
    }

    std::vector<KeyEvent> before;
    std::vector<KeyEvent> after;
};

} // namespace

std::optional<xcb_keycode_t> KeyboardState::key(xcb_keysym_t symbol) const
{
    const auto found = std::find(symbols.begin(), symbols.end(), symbol);
    if (columns == 0 || found == symbols.end()) {
        return std::nullopt;
    }
    const auto index = static_cast<size_t>(found - symbols.begin());
    return static_cast<xcb_keycode_t>(firstKeycode + index / columns);
}

std::optional<xcb_keycode_t> KeyboardState::shortcutKey(xcb_keysym_t symbol) const
{
    const auto found = findKey(symbol, true, *this);
    return found ? std::optional(found->keycode) : std::nullopt;
}

std::optional<xcb_keycode_t> KeyboardState::plainKey(xcb_keysym_t symbol) const
{
    const auto found = findKey(symbol, true, *this);
    return found && !found->isShifted ? std::optional(found->keycode) : std::nullopt;
}

std::span<const xcb_keysym_t> KeyboardState::symbolsOf(xcb_keycode_t keycode) const
{
    const size_t first = static_cast<size_t>(keycode - firstKeycode) * columns;
    const bool isKey = keycode >= firstKeycode && first + columns <= symbols.size();
    return isKey ? std::span(symbols).subspan(first, columns) : std::span<const xcb_keysym_t>();
}

bool KeyboardState::isBlank(xcb_keycode_t keycode) const
{
    const auto types = symbolsOf(keycode);
    return std::all_of(types.begin(), types.end(), [](xcb_keysym_t each) { return each == XCB_NO_SYMBOL; });
}

uint16_t KeyboardState::modifierWith(std::initializer_list<xcb_keysym_t> keySymbols) const
{
    const auto isOne = [&](xcb_keycode_t keycode) {
        const auto types = symbolsOf(keycode);
        return std::find_first_of(types.begin(), types.end(), keySymbols.begin(), keySymbols.end()) !=
               types.end();
    };
    const auto found = std::find_if(modifierKeys.begin(), modifierKeys.end(), isOne);
    const auto index = static_cast<size_t>(found - modifierKeys.begin());
    return found != modifierKeys.end() ? static_cast<uint16_t>(1U << index / keysPerModifier) : uint16_t{0};
}

std::optional<std::vector<KeyEvent>> keyEvents(const Keystroke& keystroke, const KeyboardState& state)
{
    const auto modifiers = wantedModifiers(keystroke.modifiers, state);
    if (!modifiers) {
        return std::nullopt;
    }
    const Quiet quiet(state);
    std::vector<KeyEvent> events = quiet.before;
    for (const xcb_keycode_t key : *modifiers) {
        events.push_back({key, true});
    }
    if (!type(events, keystroke, state)) {
        return std::nullopt;
    }
    for (const xcb_keycode_t key : *modifiers) {
        events.push_back({key, false});
    }
    events.insert(events.end(), quiet.after.begin(), quiet.after.end());
    return events;
}

std::vector<KeyEvent> keyEvents(xcb_keycode_t keycode, const KeyboardState& state)
{
    const Quiet quiet(state);
    std::vector<KeyEvent> events = quiet.before;
    tap(events, keycode);
    events.insert(events.end(), quiet.after.begin(), quiet.after.end());
    return events;
}

#include "linux/x11/VirtualKeys.h"

#include "linux/x11/X11Keyboard.h"

#include <QKeyEvent>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <bitset>
#include <map>

namespace {

/// The stored code of a key, what it types on a US keyboard, and its place there, which is the keycode that
/// the kernel's key has on X11; 0 for a key that PC keyboards lack.
struct VirtualKey {
    quint32 code;
    xcb_keysym_t symbol;
    xcb_keycode_t place;
};

// clang-format off
constexpr VirtualKey virtualKeys[] = {
    {0, XKB_KEY_a, 38}, {1, XKB_KEY_s, 39}, {2, XKB_KEY_d, 40}, {3, XKB_KEY_f, 41}, {4, XKB_KEY_h, 43},
    {5, XKB_KEY_g, 42}, {6, XKB_KEY_z, 52}, {7, XKB_KEY_x, 53}, {8, XKB_KEY_c, 54}, {9, XKB_KEY_v, 55},
    {10, XKB_KEY_section, 94}, {11, XKB_KEY_b, 56}, {12, XKB_KEY_q, 24}, {13, XKB_KEY_w, 25},
    {14, XKB_KEY_e, 26}, {15, XKB_KEY_r, 27}, {16, XKB_KEY_y, 29}, {17, XKB_KEY_t, 28},
    {18, XKB_KEY_1, 10}, {19, XKB_KEY_2, 11}, {20, XKB_KEY_3, 12}, {21, XKB_KEY_4, 13},
    {22, XKB_KEY_6, 15}, {23, XKB_KEY_5, 14}, {24, XKB_KEY_equal, 21}, {25, XKB_KEY_9, 18},
    {26, XKB_KEY_7, 16}, {27, XKB_KEY_minus, 20}, {28, XKB_KEY_8, 17}, {29, XKB_KEY_0, 19},
    {30, XKB_KEY_bracketright, 35}, {31, XKB_KEY_o, 32}, {32, XKB_KEY_u, 30},
    {33, XKB_KEY_bracketleft, 34}, {34, XKB_KEY_i, 31}, {35, XKB_KEY_p, 33}, {36, XKB_KEY_Return, 36},
    {37, XKB_KEY_l, 46}, {38, XKB_KEY_j, 44}, {39, XKB_KEY_apostrophe, 48}, {40, XKB_KEY_k, 45},
    {41, XKB_KEY_semicolon, 47}, {42, XKB_KEY_backslash, 51}, {43, XKB_KEY_comma, 59},
    {44, XKB_KEY_slash, 61}, {45, XKB_KEY_n, 57}, {46, XKB_KEY_m, 58}, {47, XKB_KEY_period, 60},
    {48, XKB_KEY_Tab, 23}, {49, XKB_KEY_space, 65}, {50, XKB_KEY_grave, 49},
    {51, XKB_KEY_BackSpace, 22}, {53, XKB_KEY_Escape, 9}, {64, XKB_KEY_F17, 195},
    {65, XKB_KEY_KP_Decimal, 91}, {67, XKB_KEY_KP_Multiply, 63}, {69, XKB_KEY_KP_Add, 86},
    {71, XKB_KEY_Clear, 0}, {72, XKB_KEY_XF86AudioRaiseVolume, 123},
    {73, XKB_KEY_XF86AudioLowerVolume, 122}, {74, XKB_KEY_XF86AudioMute, 121},
    {75, XKB_KEY_KP_Divide, 106}, {76, XKB_KEY_KP_Enter, 104}, {78, XKB_KEY_KP_Subtract, 82},
    {79, XKB_KEY_F18, 196}, {80, XKB_KEY_F19, 197}, {81, XKB_KEY_KP_Equal, 125}, {82, XKB_KEY_KP_0, 90},
    {83, XKB_KEY_KP_1, 87}, {84, XKB_KEY_KP_2, 88}, {85, XKB_KEY_KP_3, 89}, {86, XKB_KEY_KP_4, 83},
    {87, XKB_KEY_KP_5, 84}, {88, XKB_KEY_KP_6, 85}, {89, XKB_KEY_KP_7, 79}, {90, XKB_KEY_F20, 198},
    {91, XKB_KEY_KP_8, 80}, {92, XKB_KEY_KP_9, 81}, {96, XKB_KEY_F5, 71}, {97, XKB_KEY_F6, 72},
    {98, XKB_KEY_F7, 73}, {99, XKB_KEY_F3, 69}, {100, XKB_KEY_F8, 74}, {101, XKB_KEY_F9, 75},
    {103, XKB_KEY_F11, 95}, {105, XKB_KEY_F13, 191}, {106, XKB_KEY_F16, 194}, {107, XKB_KEY_F14, 192},
    {109, XKB_KEY_F10, 76}, {110, XKB_KEY_Menu, 135}, {111, XKB_KEY_F12, 96}, {113, XKB_KEY_F15, 193},
    {114, XKB_KEY_Insert, 118}, {115, XKB_KEY_Home, 110}, {116, XKB_KEY_Prior, 112},
    {117, XKB_KEY_Delete, 119}, {118, XKB_KEY_F4, 70}, {119, XKB_KEY_End, 115}, {120, XKB_KEY_F2, 68},
    {121, XKB_KEY_Next, 117}, {122, XKB_KEY_F1, 67}, {123, XKB_KEY_Left, 113},
    {124, XKB_KEY_Right, 114}, {125, XKB_KEY_Down, 116}, {126, XKB_KEY_Up, 111}};
// clang-format on

bool isLetterOrDigit(const VirtualKey& key)
{
    return (key.symbol >= XKB_KEY_a && key.symbol <= XKB_KEY_z) ||
           (key.symbol >= XKB_KEY_0 && key.symbol <= XKB_KEY_9);
}

/// The keys of the codes on one keyboard, no key under two of them. A letter or digit is on the key that
/// bears it, another sign on the key that types it without Shift; what is on no such key is on the one at its
/// place, or, where that is some other code's, on one that is left over.
class KeyAssignment
{
public:
    explicit KeyAssignment(const KeyboardState& keyboard)
    {
        const auto exists = [&keyboard](xcb_keycode_t place) {
            return place >= keyboard.firstKeycode && !keyboard.isBlank(place);
        };
        const auto isLeft = [&](const VirtualKey& key) { return exists(key.place) && !_isTaken[key.place]; };
        assign([&](const VirtualKey& key) {
            return isLetterOrDigit(key) ? keyboard.shortcutKey(key.symbol) : std::nullopt;
        });
        assign([&](const VirtualKey& key) { return keyboard.plainKey(key.symbol); });
        assign([&](const VirtualKey& key) { return isLeft(key) ? std::optional(key.place) : std::nullopt; });
        assign([&](const VirtualKey& key) {
            const auto* const left = std::find_if(std::begin(virtualKeys), std::end(virtualKeys), isLeft);
            const bool isFound = exists(key.place) && left != std::end(virtualKeys);
            return isFound ? std::optional(left->place) : std::nullopt;
        });
    }

    std::optional<xcb_keycode_t> keycode(quint32 code) const
    {
        const auto found = _keycodes.find(code);
        return found != _keycodes.end() ? std::optional(found->second) : std::nullopt;
    }

    std::optional<quint32> code(xcb_keycode_t keycode) const
    {
        const auto found = std::find_if(_keycodes.begin(), _keycodes.end(),
                                        [keycode](const auto& each) { return each.second == keycode; });
        return found != _keycodes.end() ? std::optional(found->first) : std::nullopt;
    }

private:
    /// Gives each code that has no key yet the one that is proposed for it, if that is free.
    template<typename Proposal>
    void assign(const Proposal& proposal)
    {
        for (const VirtualKey& key : virtualKeys) {
            const std::optional<xcb_keycode_t> keycode =
                _keycodes.contains(key.code) ? std::nullopt : proposal(key);
            if (keycode && !_isTaken[*keycode]) {
                _keycodes.emplace(key.code, *keycode);
                _isTaken.set(*keycode);
            }
        }
    }

    std::map<quint32, xcb_keycode_t> _keycodes;
    std::bitset<256> _isTaken; ///< by keycode
};

} // namespace

std::optional<xcb_keysym_t> VirtualKeys::symbol(quint32 code)
{
    const auto* const found = std::find_if(std::begin(virtualKeys), std::end(virtualKeys),
                                           [code](const VirtualKey& key) { return key.code == code; });
    return found != std::end(virtualKeys) ? std::optional(found->symbol) : std::nullopt;
}

std::optional<xcb_keycode_t> VirtualKeys::keycode(quint32 code, const KeyboardState& keyboard)
{
    return KeyAssignment(keyboard).keycode(code);
}

std::optional<quint32> VirtualKeys::code(xcb_keycode_t keycode, const KeyboardState& keyboard)
{
    return KeyAssignment(keyboard).code(keycode);
}

std::array<VirtualKeys::Modifier, 4> VirtualKeys::modifiers(const KeyboardState& keyboard)
{
    return {{{HotKeyModifier::command, keyboard.modifierWith({XKB_KEY_Super_L, XKB_KEY_Super_R})},
             {HotKeyModifier::shift, XCB_MOD_MASK_SHIFT},
             {HotKeyModifier::option, keyboard.modifierWith({XKB_KEY_Alt_L, XKB_KEY_Alt_R})},
             {HotKeyModifier::control, XCB_MOD_MASK_CONTROL}}};
}

std::optional<KeyDown> VirtualKeys::keyDown(const QKeyEvent& event)
{
    const auto keyboard = X11Keyboard::state();
    const auto keyCode =
        keyboard ? code(static_cast<xcb_keycode_t>(event.nativeScanCode()), *keyboard) : std::nullopt;
    if (!keyCode) {
        return std::nullopt;
    }
    KeyDown down{.keyCode = *keyCode, .modifiers = 0};
    for (const Modifier& each : modifiers(*keyboard)) {
        down.modifiers |= (event.nativeModifiers() & each.mask) != 0 ? each.stored : 0;
    }
    return down;
}

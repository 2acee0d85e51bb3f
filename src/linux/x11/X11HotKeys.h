#pragma once

#include "platform/HotKeys.h"

#include <QAbstractNativeEventFilter>
#include <QMap>

#include <xcb/xcb.h>

#include <optional>
#include <vector>

struct KeyboardState;

/// Hot keys as passive grabs of the X server's keyboard, whatever Caps Lock and Num Lock are set to. Command
/// is the Super key, and option is Alt.
class X11HotKeys final : public HotKeys, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    X11HotKeys();
    ~X11HotKeys() override;

    /// Waits for the server once.
    void apply(const QList<HotKey>& hotKeys) override;
    State state(quint32 id) const override { return _states.value(id, State::unavailable); }
    std::optional<KeyDown> keyDown(const QKeyEvent& event) const override;

private:
    struct Grab {
        quint32 id = 0;
        xcb_keycode_t keycode = 0;
        uint16_t modifiers = 0; ///< without locks
    };

    struct Release {
        xcb_keycode_t keycode = 0;
        xcb_timestamp_t time = 0;
    };

    void release();
    void grab(const std::vector<Grab>& wanted);
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool takeKey(const xcb_key_press_event_t& event, bool isPress);

    std::vector<Grab> _grabs;
    QMap<quint32, State> _states;
    uint16_t _locks = 0;     ///< the modifiers that do not count
    Release _released;       ///< the last key that was let go
    int _keyboardEvent = -1; ///< the number of the event that tells of the keyboard
};
